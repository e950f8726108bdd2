// What the user reads. The core's sentences stand in it in English, whole, with %1..%9 for what stands in
// them. A program that speaks another language gives a dictionary; without one, as in qdm, and while an
// InEnglish lives, as for what goes into a file, they stay English.
#pragma once

#include "base/words.h"

#include <initializer_list>
#include <string>
#include <string_view>

namespace qdm {

// A sentence in the user's language, its places not filled yet. `count` chooses among the forms of a sentence
// with "%n"; -1 where there is none. Called from any thread.
using Dictionary = std::string (*)(std::string_view english, int count);
// Null for English.
void SetDictionary(Dictionary dictionary);

// While it lives, what this thread says is English.
class InEnglish {
 public:
  InEnglish();
  ~InEnglish();
  InEnglish(const InEnglish&) = delete;
  InEnglish& operator=(const InEnglish&) = delete;

 private:
  bool before_;
};

std::string Say(std::string_view english, std::initializer_list<std::string> places = {});
// For every count but one, which has a sentence of its own; "%n" is the count.
std::string SayCount(std::string_view english, int count, std::initializer_list<std::string> places = {});

// Each member of a list: "bytes in hexadecimal, all lines".
std::string SayEach(std::string_view english);

// Marks a sentence of a table, which is said where it is shown.
constexpr const char* Marked(const char* english) { return english; }

}  // namespace qdm
