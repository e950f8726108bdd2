// make_examples FOLDER: writes the example files there.

#include "base/file_access.h"
#include "examples/example_data.h"

#include <cstdio>

int main(int argumentCount, char** arguments) {
  if (argumentCount != 2) {
    std::fputs("usage: make_examples FOLDER\n", stderr);
    return 2;
  }
  try {
    const std::filesystem::path folder = qdm::PathFromUtf8(arguments[1]);
    for (const qdm::examples::ExampleFile& file : qdm::examples::Files()) {
      qdm::WriteFileSafely(folder / qdm::PathFromUtf8(file.Name), file.Contents);
      std::printf("%s: %zu bytes\n", file.Name.c_str(), file.Contents.size());
    }
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "make_examples: %s\n", failure.what());
    return 1;
  }
  return 0;
}
