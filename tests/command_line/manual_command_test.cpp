// What was understood of a manual's page, as a table, as JSON and as a definition.
#include "support/qdm_runner.h"

namespace qdm {
namespace {

using testing::HasSubstr;

std::string WritePage(const QdmRunner& qdm, std::string_view text) {
  return qdm.Write("page.txt", Bytes(text.begin(), text.end()));
}

constexpr std::string_view kPage =
    "Baud rate: 9600\nParity: none\n\"Power On\" 02 50 4F 4E 03\nPower Off 02 50 4F 46 03\nVideo 02 49 4E 35 "
    "03\n"
    "Video 02 49 4E 33 03\nThe projector answers with ACK.\n";

TEST(Manual, TellsCandidatesAlternativesAndReplies) {
  QdmRunner qdm;
  const std::string page = WritePage(qdm, kPage);
  EXPECT_THAT(
      qdm.Run({"manual", page, "--json"}),
      Answers(
          0,
          "{\"format\": \"qdm-manual-reading\", \"version\": 1, \"line\": {\"speed\": 9600, \"parity\": "
          "\"none\", "
          "\"stop\": null},\n \"commands\": [\n"
          "  {\"slot\": 1, \"name\": \"Power on\", \"bytes\": \"02 50 4F 4E 03\", \"sure\": true, "
          "\"function\": "
          "\"Power On\", \"lines\": [3], \"alternatives\": []},\n"
          "  {\"slot\": 4, \"name\": \"Video\", \"bytes\": \"02 49 4E 35 03\", \"sure\": false, "
          "\"function\": "
          "\"Video\", \"lines\": [5], \"alternatives\": [\"02 49 4E 33 03\"]},\n"
          "  {\"slot\": 8, \"name\": \"Power off\", \"bytes\": \"02 50 4F 46 03\", \"sure\": true, "
          "\"function\": "
          "\"Power Off\", \"lines\": [4], \"alternatives\": []}],\n"
          " \"replies\": [\n"
          "  {\"slot\": 11, \"name\": \"Power on reply\", \"bytes\": \"06\", \"sure\": true, \"lines\": "
          "[7]},\n"
          "  {\"slot\": 14, \"name\": \"Video reply\", \"bytes\": \"06\", \"sure\": true, \"lines\": [7]},\n"
          "  {\"slot\": 18, \"name\": \"Power off reply\", \"bytes\": \"06\", \"sure\": true, \"lines\": "
          "[7]}],\n"
          " \"found\": 4}\n",
          ""));
  EXPECT_THAT(qdm.Run({"manual", page}).Out,
              testing::AllOf(HasSubstr("line: 9600, parity none, stop bits not said\n"),
                             HasSubstr("please check"), HasSubstr("4 commands on the page\n")));
}

TEST(Manual, WritesADefinitionOfWhatIsSure) {
  QdmRunner qdm;
  const std::string page = WritePage(qdm, kPage);
  const std::string file = qdm.Path("made.BVD");
  ASSERT_EQ(qdm.Run({"manual", page, "-o", file, "--manufacturer", "Visora", "--model", "Grand 4"}).Status,
            0);
  const ProjectorDefinition sure = ReadDefinitions(qdm.Folder / "made.BVD").at(0);
  EXPECT_EQ(sure.Model.Unpadded(), u"Grand 4");
  EXPECT_EQ(sure.Strings[8].Count, 5);
  EXPECT_EQ(sure.Strings[4].Count, 0);
  qdm.Run({"manual", page, "-o", file, "--manufacturer", "Visora", "--model", "Grand 4", "--doubtful"});
  EXPECT_EQ(ReadDefinitions(qdm.Folder / "made.BVD").at(0).Strings[4].Count, 5);
}

TEST(Manual, RefusesWhatItCannotUse) {
  QdmRunner qdm;
  const std::string empty = WritePage(qdm, "Nothing that could be a command.\n");
  EXPECT_EQ(qdm.Run({"manual", empty}).Status, 1);
  EXPECT_THAT(qdm.Run({"manual", qdm.Path("none.txt")}), IsUnusable("none.txt"));
  EXPECT_EQ(qdm.Run({"manual", empty, "-o", qdm.Path("a.BVD")}).Status, 2);
  EXPECT_EQ(qdm.Run({"manual", empty, "--doubtful"}).Status, 2);
}

}  // namespace
}  // namespace qdm
