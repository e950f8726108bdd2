#include "projectors/manual_draft.h"

#include "serial_strings/text_parser.h"

#include <gmock/gmock.h>

namespace qdm {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

const std::u16string kPage =
    u"Function          Code\n"
    u"Power on          50 57 31 0D\n"
    u"Power off         50 57 30 0D\n"
    u"Computer 1        49 4E 31 0D\n"
    u"Video             49 4E 33 0D\n"
    u"mystery           4D 31 0D\n";

std::string BytesOf(const ManualDraft& draft, std::size_t slot) {
  const ManualRow* row = draft.RowOf(slot);
  return row == nullptr ? "" : HexBytes(row->Candidate().String);
}
bool Ticked(const ManualDraft& draft, std::size_t slot) {
  const ManualRow* row = draft.RowOf(slot);
  return row != nullptr && row->Ticked;
}
std::optional<std::string> Mark(ManualDraft& draft, std::size_t slot, const std::u16string& text,
                                const std::u16string& piece) {
  return draft.Mark(slot, text.find(piece), piece.size());
}

TEST(ManualDraft, OffersWhatTheReadingFoundAndTicksWhatIsSure) {
  ManualDraft draft;
  draft.Read(kPage);
  for (const ManualSlot& slot : draft.Reading().Slots) {
    EXPECT_EQ(Ticked(draft, static_cast<std::size_t>(slot.Slot)), slot.Sure) << slot.Slot;
  }
  EXPECT_EQ(BytesOf(draft, kPowerOffSlot), "50 57 30 0D");
  EXPECT_THAT(draft.NotFound(), Contains(kVolumeUpSlot));
  EXPECT_THAT(draft.NotFound(), Not(Contains(kPowerOnSlot)));
  const ManualPiece& first = draft.Pieces().front();
  EXPECT_EQ(first.Slot, kPowerOnSlot);
  EXPECT_EQ(first.Range.Line, 2U);
  EXPECT_EQ(first.Meaning, "\"Power on\": 50h,57h,31h,0Dh (50 57 31 0D)");
}

TEST(ManualDraft, ADecisionLastsAsLongAsThePageGivesItsBytes) {
  ManualDraft draft;
  draft.Read(kPage);
  draft.Tick(kPowerOffSlot, false);
  draft.Read(kPage + u"\nVolume up  56 2B 0D\nVolume down  56 2D 0D\n");
  EXPECT_FALSE(Ticked(draft, kPowerOffSlot));
  EXPECT_EQ(BytesOf(draft, kVolumeUpSlot), "56 2B 0D");

  std::u16string corrected = kPage;
  corrected.replace(corrected.find(u"30 0D"), 2, u"32");
  draft.Read(corrected);
  EXPECT_EQ(BytesOf(draft, kPowerOffSlot), "50 57 32 0D");
  EXPECT_EQ(Ticked(draft, kPowerOffSlot), draft.RowOf(kPowerOffSlot)->Sure);
}

TEST(ManualDraft, AMarkedPieceIsTakenAndFollowsItsText) {
  ManualDraft draft;
  draft.Read(kPage);
  EXPECT_FALSE(Mark(draft, kBlankSlot, kPage, u"4D 31 0D"));
  EXPECT_EQ(BytesOf(draft, kBlankSlot), "4D 31 0D");
  EXPECT_TRUE(Ticked(draft, kBlankSlot));

  const std::u16string moved = u"RS-232\n\n" + kPage;
  draft.Read(moved);
  ASSERT_EQ(BytesOf(draft, kBlankSlot), "4D 31 0D");
  EXPECT_THAT(draft.RowOf(kBlankSlot)->Candidate().Ranges, ElementsAre(ManualRange{8, 18, 26}));
  draft.Read(u"something else");
  EXPECT_EQ(draft.RowOf(kBlankSlot), nullptr);

  const std::u16string prose = u"This sentence is longer than any command is";
  draft.Read(prose);
  EXPECT_TRUE(Mark(draft, kBlankSlot, prose, prose));
  EXPECT_EQ(draft.RowOf(kBlankSlot), nullptr) << "too long to be a command";
}

TEST(ManualDraft, AMarkTakesTheRowOver) {
  ManualDraft draft;
  draft.Read(kPage);
  EXPECT_FALSE(Mark(draft, kPowerOnSlot, kPage, u"4D 31 0D"));
  EXPECT_EQ(BytesOf(draft, kPowerOnSlot), "4D 31 0D");
  ASSERT_GT(draft.RowOf(kPowerOnSlot)->Candidates.size(), 1U) << "what was found stays an alternative";
  const std::vector<ManualCandidate> candidates = draft.RowOf(kPowerOnSlot)->Candidates;
  draft.Choose(kPowerOnSlot, candidates.size() - 1);
  EXPECT_EQ(draft.RowOf(kPowerOnSlot)->Candidate().String, candidates.back().String);
}

TEST(BetterReading, TheReadingWithMoreThatIsSureIsBetter) {
  ManualReading poor = ReadManual(u"Power off  50 57 30 0D");
  ManualReading rich = ReadManual(kPage);
  EXPECT_TRUE(BetterReading(rich, poor));
  EXPECT_FALSE(BetterReading(poor, rich));
  EXPECT_FALSE(BetterReading(rich, rich));
  for (ManualSlot& slot : rich.Slots) slot.Sure = false;
  for (ManualSlot& slot : poor.Slots) slot.Sure = true;
  EXPECT_TRUE(BetterReading(poor, rich));
}

}  // namespace
}  // namespace qdm
