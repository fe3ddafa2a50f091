// parse-definition FILE: reads a definition into a tree and nothing more, to measure that alone.

#include <iostream>

#include "framework/dom/dom.h"
#include "framework/std/exception.h"
#include "framework/std/file.h"

int main(int count, char** arguments) try {
  if (count != 2) {
    std::cerr << "usage: parse-definition FILE\n";
    return 2;
  }
  TAVDOM dom(nullptr);
  dom.parseFile(TAVFile(TAVString(arguments[1])));
  return 0;
} catch (const std::exception& error) {
  std::cerr << error.what() << '\n';
  return 1;
}
