#include "base/words.h"

#include <algorithm>
#include <atomic>
#include <cstddef>

namespace qdm {
namespace {

std::atomic<Dictionary> dictionary = nullptr;
thread_local bool inEnglish = false;

std::string Look(std::string_view english, int count) {
  const Dictionary look = inEnglish ? nullptr : dictionary.load();
  return look == nullptr || english.empty() ? std::string(english) : look(english, count);
}

// Places are filled in one pass: what stands in one may have a "%1" of its own.
std::string Filled(std::string_view sentence, std::initializer_list<std::string> places, int count) {
  std::string filled;
  for (std::size_t i = 0; i < sentence.size(); ++i) {
    const char mark = sentence[i] == '%' && i + 1 < sentence.size() ? sentence[i + 1] : '\0';
    const auto place = static_cast<std::size_t>(mark - '1');
    if (mark == 'n' && count >= 0) {
      filled += std::to_string(count);
    } else if (mark >= '1' && mark <= '9' && place < places.size()) {
      filled += places.begin()[place];
    } else {
      filled += sentence[i];
      continue;
    }
    ++i;
  }
  return filled;
}

}  // namespace

void SetDictionary(Dictionary next) { dictionary = next; }

InEnglish::InEnglish() : before_(inEnglish) { inEnglish = true; }
InEnglish::~InEnglish() { inEnglish = before_; }

std::string Say(std::string_view english, std::initializer_list<std::string> places) {
  return Filled(Look(english, -1), places, -1);
}

std::string SayEach(std::string_view english) {
  constexpr std::string_view kBetween = ", ";
  std::string said;
  for (std::size_t at = 0; at <= english.size();) {
    const std::size_t end = std::min(english.find(kBetween, at), english.size());
    said.append(at == 0 ? "" : kBetween).append(Say(english.substr(at, end - at)));
    at = end + kBetween.size();
  }
  return said;
}

std::string SayCount(std::string_view english, int count, std::initializer_list<std::string> places) {
  return Filled(Look(english, count), places, count);
}

}  // namespace qdm
