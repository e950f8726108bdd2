// What bash completes is written down in its own language; it must be what the program's tables hold.
#include "config/panel_types.h"
#include "line/speeds_and_parities.h"
#include "support/files.h"

#include <gmock/gmock.h>

namespace qdm {
namespace {

template <class Rows, class Member>
std::string Joined(const Rows& rows, Member member, const std::string& separator) {
  std::string joined;
  for (const auto& row : rows) joined.append(joined.empty() ? "" : separator).append(row.*member);
  return joined;
}

TEST(BashCompletion, OffersEveryRowOfTheTables) {
  const std::string script = TextOfFile(PathFromUtf8(QDM_SOURCE_DIR "/packaging/qdm.bash-completion"));
  EXPECT_THAT(script, testing::HasSubstr("--type) _qdm_words $'" +
                                         Joined(PanelTypes, &PanelType::ShortName, "\\n") + "'"));
  const std::string settings = "{" + Joined(LineSpeeds, &LineSpeed::Digits, ",") + "},{" +
                               Joined(LineParities, &ParityChoice::Letter, ",") + "},8,2";
  EXPECT_THAT(script, testing::HasSubstr("--settings) _qdm_words \"$(printf '%s\\n' " + settings + ")\""));
}

}  // namespace
}  // namespace qdm
