// mxil: image-list files (.lIL): make one from pictures, list it, take one picture out, and
// import the lists of a form. The commands live in the image-list layer (ListCommands.h).
#include <iostream>
#include <string>
#include <vector>

#include "imagelist/ListCommands.h"

int main(int argc, char** argv) {
  std::vector<std::string> args(argv + 1, argv + argc);
  return mx::imagelist::RunImageListCommand(args, std::cout, std::cerr);
}
