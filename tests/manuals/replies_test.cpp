#include "manuals/reading_of.h"

namespace qdm {
namespace {

// "11 06 0D" for each reply.
std::vector<std::string> RepliesOf(const std::string& text) {
  const std::string page =
      "Power On 02 50 4F 4E 03\nS-Video 02 49 53 56 03\nAV Mute Off 02 50 4D 30 03\n" + text;
  std::vector<std::string> replies;
  for (const ManualReply& reply : ReadManual(FromUtf8(page)).Replies) {
    replies.push_back(std::to_string(reply.Slot) + " " + HexBytes(reply.String) +
                      (reply.Sure ? "" : " unsure"));
  }
  return replies;
}

TEST(Replies, AreWhatThePageFixes) {
  const std::pair<const char*, std::vector<std::string>> pages[] = {
      {"A valid command is answered with [ACK] \"CR\".", {"11 06 0D", "22 06 0D"}},
      {"Reply: \"OK\" <CR><LF>, or \"ERR\"", {"11 4F 4B 0D 0A", "22 4F 4B 0D 0A"}},
      {"Reply: 0xFE <Command> 0x06 <Status> <Check>",
       {"11 FE Ignore 06 Ignore Ignore unsure", "22 FE Ignore 06 Ignore Ignore unsure"}},
      {"ACK (06 h) CR (0 Dh) Data", {}},
      {"Acknowledge ACK (06h)", {"11 06", "22 06"}},
      {"Projector Return (Pass): P\nProjector Return (Fail): F", {"11 50", "22 50"}},
      {"After a command the projector sends \":\" and is ready.", {"11 3A", "22 3A"}},
      {"Normal response\nO K\nReturn code (0DH)", {"11 4F 4B 0D", "22 4F 4B 0D"}},
      {"The command is echoed back.", {"11 02 50 4F 4E 03", "22 02 50 4D 30 03"}},
      {"接收成功時ACKCR不成功時", {"11 06 0D unsure", "22 06 0D unsure"}},
      {"Every request is echoed.\nRequest: *NX<CR>\nEcho: *NX<CR><LF>\nRequest: *PR<CR>\nEcho: *PR<CR><LF>",
       {"11 02 50 4F 4E 03 0A unsure", "22 02 50 4D 30 03 0A unsure"}},
      {"The projector may answer something.", {}},
      {"In case of an error it sends \"E\" and stops.", {}},
  };
  for (const auto& [text, expected] : pages) EXPECT_EQ(RepliesOf(text), expected) << text;
}

}  // namespace
}  // namespace qdm
