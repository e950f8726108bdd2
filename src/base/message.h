// What a rule or a procedure has to tell the user: a value that a form shows in a box, qdm prints and a test
// compares.
#pragma once

#include <string>

namespace qdm {

enum class MessageIcon { None, Information, Question, Exclamation };

struct Message {
  std::string Text;  // UTF-8; lines separated by "\r\n"
  std::string Title;
  MessageIcon Icon = MessageIcon::None;
  std::string Detail{};  // what the text leaves open, shown below it; often empty

  friend bool operator==(const Message&, const Message&) = default;
};

}  // namespace qdm
