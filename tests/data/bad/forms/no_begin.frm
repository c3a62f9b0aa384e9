VERSION 5.00
Attribute VB_Name = "x"
