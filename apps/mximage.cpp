// mximage: information about a picture, its raw surface, conversion between formats and a decode
// timer. The commands live in the image layer (ImageCommands.h); this only passes the arguments.
#include <iostream>
#include <string>
#include <vector>

#include "image/ImageCommands.h"

int main(int argc, char** argv) {
  std::vector<std::string> args(argv + 1, argv + argc);
  return mx::image::RunImageCommand(args, std::cout, std::cerr);
}
