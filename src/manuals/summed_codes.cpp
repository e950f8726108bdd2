#include "manuals/check_sums.h"
#include "manuals/codes.h"

#include <algorithm>

namespace qdm {
namespace {

using Text = std::u16string_view;

bool LacksSum(const Code& code) {
  const auto holes = std::count_if(code.Bytes.begin(), code.Bytes.end(), [](const CodeByte& byte) {
    return byte.Kind == ByteKind::VAR && byte.Value == 0;
  });
  return code.Broken && holes == 1;
}

// What the whole codes of the page end with.
std::optional<CheckSum> ShownCheckSum(const std::vector<Code>& codes) {
  constexpr std::ptrdiff_t kFewest = 3;
  for (const CheckSum check : kCheckSums) {
    const auto right = std::count_if(codes.begin(), codes.end(), [check](const Code& code) {
      return code.How == Notation::Hexadecimal && !code.Broken && code.Bytes.size() > 3 &&
             IsRight(check, Values(code.Bytes));
    });
    if (right >= kFewest) return check;
  }
  return std::nullopt;
}

std::optional<CheckSum> StatedCheckSum(const ManualPage& page) {
  const auto says = [&](std::initializer_list<Text> words) {
    return std::any_of(words.begin(), words.end(),
                       [&](Text word) { return page.Folded.find(word) != std::u16string::npos; });
  };
  if (says({u"exclusive", u"exclusif", u"exclusiv", u"xor", u"ex-or", u"异或"})) return CheckSum::ExclusiveOr;
  if (says({u"two's compl", u"2's compl", u"twos compl", u"zweierkompl", u"complement a deux",
            u"complemento a dos", u"complemento a due", u"补码"}))
    return CheckSum::TwosComplement;
  if (says({u"crc"})) return std::nullopt;
  if (says({u"header excluded", u"without the header", u"except the header", u"excluding the header",
            u"excluding header", u"from the second"}))
    return CheckSum::SumFromSecond;
  if (says({u"sum of", u"somme", u"summe", u"suma ", u"somma", u"adding", u"added", u"addition", u"total",
            u"累加", u"求和", u"校验和"}))
    return CheckSum::Sum;
  return std::nullopt;
}

}  // namespace

void CompleteCheckSums(const ManualPage& page, std::vector<Code>& codes) {
  if (std::none_of(codes.begin(), codes.end(), LacksSum)) return;
  auto check = ShownCheckSum(codes);
  if (!check) check = StatedCheckSum(page);
  if (!check) return;
  for (Code& code : codes) {
    if (!LacksSum(code)) continue;
    const auto hole = std::find_if(code.Bytes.begin(), code.Bytes.end(),
                                   [](const CodeByte& byte) { return byte.Kind == ByteKind::VAR; });
    *hole = {SumOf(*check, Values({code.Bytes.begin(), hole})), ByteKind::HEX};
    code.Broken = false;
    code.Computed = true;
  }
}

}  // namespace qdm
