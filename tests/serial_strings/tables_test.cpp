// The tables behind the notations and the check sums, all of them in one list: golden/tables.txt.
#include "base/code_page.h"
#include "serial_strings/check_sums.h"
#include "serial_strings/folded_text.h"
#include "support/files.h"

#include <iomanip>
#include <sstream>

namespace qdm {
namespace {

// Of every character that is not left as it is.
void AddFolds(std::ostream& out) {
  for (unsigned c = 0x80; c < 0x10000; ++c) {
    const std::u16string character(1, static_cast<char16_t>(c));
    const FoldedText folded = FoldTypography(character);
    if (folded.Text == character) continue;
    out << std::setw(4) << c << " '" << ToUtf8(folded.Text) << "' " << folded.Notes.at(0) << "\n";
  }
}

// The sum of the digits 1 to 9, as usual, and how it is written and read.
void AddSums(std::ostream& out) {
  const Bytes digits = {'1', '2', '3', '4', '5', '6', '7', '8', '9'};
  using enum SumForm::Digits;
  for (const SumMethod& method : SumMethods()) {
    const std::uint16_t sum = SumOf(method, digits);
    out << method.Name() << ": " << sum;
    for (const SumForm& form : {SumForm{Raw}, SumForm{Raw, true}, SumForm{UpperCase}, SumForm{LowerCase}}) {
      const Bytes written = Written(sum, form, method.Bits);
      out << ", " << form.Name();
      for (const int byte : written) out << " " << byte;
      EXPECT_EQ(written.size(), WidthOf(form, method.Bits));
      EXPECT_EQ(Read(written, form), sum);
    }
    out << "\n";
  }
}

TEST(Tables, StandAsTheyAlwaysHave) {
  std::ostringstream out;
  out << std::hex << std::uppercase << std::setfill('0');
  AddFolds(out);
  AddSums(out);
  ExpectGolden("serial_strings/golden/tables.txt", out.str());
}

}  // namespace
}  // namespace qdm
