Begin V.F rBegin=4
End