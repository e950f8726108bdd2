#include "manuals/functions.h"

#include <gtest/gtest.h>

namespace qdm {
namespace {

struct Label {
  const char16_t* Text;
  std::optional<int> Slot;
  bool Plain = true;
};

TEST(ClassifyLabel, KnowsWhatPanelsSendInManyLanguages) {
  const Label labels[] = {
      {u"POWER ON", 1},
      {u"Turn the projector OFF", 8},
      {u"Einschalten", 1},
      {u"Éteindre", 8},
      {u"Mise en marche", 1},
      {u"Apagar", 8},
      {u"Accensione", 1},
      {u"关机", 8},
      {u"電源オン", 1},
      {u"Turnsonthepower", 1},
      {u"Starts the projector from standby", 1},
      {u"INPUT SELECT COMPUTER 1", 2},
      {u"RGB2", 3},
      {u"HDMI 1", 3},
      {u"Composite", 4},
      {u"S-Video", 23},
      {u"Input 2 (Video)", 4},
      {u"VGA B", 3},
      {u"S-Videoinput", 23},
      {u"Pantalla en negro activada", 5},
      {u"Bild ein", 24, false},
      {u"Image off", 5, false},
      {u"Encendido", 1},
      {u"Volume giù", 7},
      {u"VIDEO 2", 23},
      {u"PICTURE MUTE ON", 5},
      {u"A/V Mute Off", 24},
      {u"Shutter close", 5},
      {u"Open the shutter", 24},
      {u"画面静音 开", 5},
      {u"Volume +", 6},
      {u"- VOLUME", 7},
      {u"Lautstärke leiser", 7},
      {u"Lauter", 6},
      {u"Quieter", 7},
      {u"S-Video Blank ON", 5, false},
      {u"Met le projecteur hors tension", 8, false},
      {u"Blanks the picture", 5, false},
      {u"Blank on, not on this model", std::nullopt},
      {u"VA1", 2, false},         // a letter lost
      {u"Shutter on", 5, false},  // dark or light?
      {u"VGA2 Component", 3, false},
      {u"SOUND MUTE ON", std::nullopt},
      {u"Mute On", std::nullopt},
      {u"Auto Power On", std::nullopt},
      {u"Power On with Password", std::nullopt},
      {u"Power ON/OFF", std::nullopt},
      {u"Power Status", std::nullopt},
      {u"Blank (not supported) on", std::nullopt},
      {u"Freeze On", std::nullopt},
      {u"", std::nullopt},
  };
  for (const Label& label : labels) {
    const Function function = ClassifyLabel(label.Text);
    EXPECT_EQ(SlotOf(function), label.Slot)
        << std::u16string_view(label.Text).size() << " " << &label - labels;
    if (label.Slot) {
      EXPECT_EQ(function.Plain, label.Plain) << &label - labels;
    }
  }
}

TEST(InContext, GivesABareStateTheSubjectAboveIt) {
  const Function off = ClassifyLabel(u"Off");
  EXPECT_EQ(SlotOf(off), std::nullopt);
  EXPECT_EQ(SlotOf(InContext(off, ClassifyLabel(u"AV Mute On"))), 24);
  EXPECT_EQ(SlotOf(InContext(off, ClassifyLabel(u"Sound mute on"))), std::nullopt);
  EXPECT_EQ(SlotOf(InContext(ClassifyLabel(u"Close"), ClassifyLabel(u"Shutter"))), 5);
}

}  // namespace
}  // namespace qdm
