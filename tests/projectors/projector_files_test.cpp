#include "projectors/projector_files.h"
#include "projectors/library_file.h"

#include "support/distinct_projector.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>

#include <utility>

namespace qdm {
namespace {
namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

const Message kRestored{"Projector configuration file damaged!\r\nRestoring projector configuration backup!",
                        "Configuration damaged!", MessageIcon::Exclamation};
const Message kLost{"Projector configuration file damaged!\r\n all projector configurations have been lost!",
                    "Brevan QDM Editor", MessageIcon::None};

Bytes Stored(std::vector<ProjectorDefinition> definitions) { return EncodeDefinitions(definitions); }

ProjectorLibrary LibraryOf(std::initializer_list<ProjectorDefinition> definitions) {
  ProjectorLibrary library;
  for (const ProjectorDefinition& definition : definitions) library.Append(definition);
  return library;
}

std::vector<std::string> Names(const ProjectorLibrary& library) {
  std::vector<std::string> names;
  for (const ProjectorDefinition& p : library.Elements()) {
    names.push_back(ToUtf8(p.Manufacturer.Unpadded()) + "/" + ToUtf8(p.Model.Unpadded()));
  }
  return names;
}

class ProjectorFilesTest : public testing::Test {
 protected:
  // What had to be told, without its details.
  std::vector<Message> Load() {
    std::vector<Message> messages = LoadProjectorDatabase(folder.Path(), library);
    for (Message& message : messages) details.push_back(std::exchange(message.Detail, {}));
    return messages;
  }

  std::vector<std::string> details;
  const TempFolder folder;
  const ProjectorFiles files{folder.Path()};
  ProjectorLibrary library = LibraryOf({NamedProjector("OLD", "content")});
  const ProjectorDefinition one = NamedProjector("ACME", "One");
  const ProjectorDefinition two = NamedProjector("ACME", "Two");
  const ProjectorDefinition three = NamedProjector("ZETA", "Three");
};

TEST_F(ProjectorFilesTest, LoadingCleansNamesDropsBlankOnesAndKeepsOrderAndDoubles) {
  ProjectorDefinition dirty = DistinctProjector();
  dirty.Manufacturer.Assign(std::u16string(u"  acme\0\0", 8));
  dirty.Model.Assign(u"\r\nz 1 ");
  WriteAndFlush(files.Library, Stored({two, dirty, NamedProjector("ACME", ""), NamedProjector(" \x01", "x"),
                                       one, NamedProjector("acme", "TWO")}));
  EXPECT_THAT(Load(), IsEmpty());
  EXPECT_THAT(Names(library), ElementsAre("ACME/Two", "ACME/z 1", "ACME/One", "ACME/TWO"));
  dirty.Manufacturer = FixedText<32>(u"ACME");
  dirty.Model = FixedText<32>(u"z 1");
  EXPECT_EQ(library[1], dirty) << "everything but the names comes as it is stored";
}

TEST_F(ProjectorFilesTest, AFragmentAtTheEndIsIgnoredWhereverTheFileIsCut) {
  WriteAndFlush(files.Library, Stored({one, two}));
  for (std::size_t length = 2 * 2084 + 1; length-- > 0;) {
    fs::resize_file(files.Library, length);
    ASSERT_THAT(Load(), IsEmpty());
    ASSERT_EQ(library.Size(), length / 2084) << length << " bytes";
  }
}

TEST_F(ProjectorFilesTest, ADamagedLibraryIsReplacedByItsBackup) {
  fs::create_directories(files.Library / "something");  // not readable as a file
  WriteAndFlush(files.Backup, Stored({one}));
  WriteAndFlush(files.Temporary, Bytes{1, 2, 3});
  EXPECT_THAT(Load(), ElementsAre(kRestored));
  EXPECT_THAT(Names(library), ElementsAre("ACME/One"));
  EXPECT_EQ(ReadWholeFile(files.Library), Stored({one}));
  EXPECT_FALSE(fs::exists(files.Backup));
  EXPECT_FALSE(fs::exists(files.Temporary)) << "it could pass for a finished save later";
  EXPECT_TRUE(fs::exists(folder / "Projectors.DAMAGED"));
  EXPECT_THAT(details, ElementsAre("Is a directory; everything is in Projectors.DAMAGED"));
  EXPECT_THAT(Load(), IsEmpty()) << "the second start finds nothing to repair";
}

TEST_F(ProjectorFilesTest, WithTheBackupDamagedTooAllIsLostAndSaidOnce) {
  for (int damage = 0; damage < 2; ++damage) {  // the second time beside what was set aside the first time
    for (const fs::path& file : {files.Library, files.Backup}) fs::create_directories(file / "something");
    EXPECT_THAT(Load(), ElementsAre(kRestored, kLost));
    EXPECT_FALSE(library.Loaded() || fs::exists(files.Library) || fs::exists(files.Backup));
  }
  EXPECT_TRUE(fs::exists(folder / "Projectors.DAMAGED2"));
}

TEST_F(ProjectorFilesTest, SavingKeepsThePreviousStateAsBackup) {
  WriteProjectorDatabase(folder.Path(), LibraryOf({one}));
  WriteProjectorDatabase(folder.Path(), LibraryOf({two, one}));
  WriteProjectorDatabase(folder.Path(), LibraryOf({three}));
  EXPECT_EQ(ReadWholeFile(files.Library), Stored({three}));
  EXPECT_EQ(ReadWholeFile(files.Backup), Stored({two, one}));
  EXPECT_FALSE(fs::exists(files.Temporary));

  WriteProjectorDatabase(folder.Path(), ProjectorLibrary());
  EXPECT_FALSE(fs::exists(files.Library));
  EXPECT_EQ(ReadWholeFile(files.Backup), Stored({two, one}));
}

TEST_F(ProjectorFilesTest, ExportKeepsTheLaterRecordsOfALongerFile) {
  const fs::path file = folder / "x.BVD";
  ExportDefinitions(file, {one, two, three});
  ExportDefinitions(file, {three});
  EXPECT_EQ(ReadWholeFile(file), Stored({three, two, three}));
}

TEST_F(ProjectorFilesTest, ImportAppendsNewSkipsEqualAndAsksAboutDifferentOnes) {
  library = LibraryOf({one, two});
  ProjectorDefinition sameButNotes = NamedProjector(" acme\x01", "One");
  sameButNotes.Notes.Assign(u"a note");
  ProjectorDefinition different = NamedProjector("acme", "two");
  different.CoolDownTime = 99;
  std::vector<std::pair<std::string, std::size_t>> asked;
  ProjectorDefinition otherThree = three;
  otherThree.Baudrate = 4;
  EXPECT_EQ(CountConflicts({three, otherThree, different, sameButNotes, three}, library), 2U);
  const ImportResult result = ImportDefinitions(
      {NamedProjector("", "x"), three, sameButNotes, different, NamedProjector("zeta", "Four"), three},
      library, [&](const ProjectorDefinition& incoming, std::size_t index) {
        asked.emplace_back(ToUtf8(incoming.Manufacturer.Unpadded()) + "/" + incoming.Model.TrimmedUtf8(),
                           index);
        library.Replace(index, incoming);
      });
  EXPECT_THAT(asked, ElementsAre(std::pair("ACME/two", 1U)));
  EXPECT_THAT(Names(library), ElementsAre("ACME/One", "ACME/two", "ZETA/Three", "ZETA/Four"));
  EXPECT_EQ(library[1].CoolDownTime, 99);
  EXPECT_EQ(library[0].Notes, one.Notes);
  EXPECT_EQ(result.Added, 2U);
  EXPECT_EQ(result.Unchanged, 2U);
  EXPECT_EQ(result.Conflicts, 1U);
}

}  // namespace
}  // namespace qdm
