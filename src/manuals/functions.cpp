#include "manuals/functions.h"

#include "manuals/page.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <vector>

namespace qdm {
namespace {

enum class Word {
  Filler,
  Action,
  Device,
  Power,
  On,
  Off,
  PowerOn,
  PowerOff,
  Input,
  Computer,
  Analog,
  Digital,
  Component,
  Video,
  SVideo,
  Blank,
  Shutter,
  Picture,
  Open,
  Close,
  Mute,
  Unmute,
  Sound,
  Volume,
  Up,
  Down,
  Other,
  Query,
  Toggle,
  Confirm,
  AtOnce,
  Unsupported,
  Count
};

struct WordList {
  Word Meaning;
  std::u16string_view Words;  // folded, separated by bars
};

constexpr WordList kVocabulary[] = {
    {Word::Filler,
     u"hexadecimal|hex|ascii|string|control|key|serial|to the|send "
     u"the|the|a|an|of|to|is|it|when|its|and|or|write|command|commands|function|mode|from|"
     u"for|port|terminal|"
     u"connector|jack|der|die|das|den|des|des|le|la|les|l|du|de|el|los|il|lo|o|as|os|d|in|as|makes|make|"
     u"operation|direct|signal|this|wert|becomes|mhl|hdcp|rear|front|main|button|send|sends|bnc|"
     u"code|item|rs232|rs|232c|232|serial|with|state|status 1|jack|pin|mini|15|video signal|external|setup|"
     u"when on|already on|"
     u"projecteur en|basic|remote|ir"},
    {Word::Action,
     u"turn|turns|turned|switch|switches|switched|select|selects|selected|selection|choose|chooses|change|"
     u"changes|activate|activates|deactivate|brings up|go "
     u"to|wahlen|wahlt|auswahlen|auswahl|schalten|schaltet|"
     u"choisir|selectionner|selection|selectionne|seleccionar|selecciona|seleccion|selezionare|seleziona|"
     u"selezione|selecionar|seleciona|selecao|commutation|umschalten|切换|切換|选择|選択|設定|设置|開始"},
    {Word::Device,
     u"projector|projektor|projecteur|proyector|proiettore|projetor|lamp|lampe|lampada|set|display|unit|"
     u"system|beamer|device|gerat|appareil|投影机|投影機|プロジェクター|プロジェクタ|本机"},
    {Word::Power,
     u"power|pow|netz|netzschalter|strom|stromversorgung|alimentation|alimentacion|alimentazione|energia|"
     u"power supply|power switch|main power|mains|电源|電源|betrieb"},
    {Word::On,
     u"on|ein|an|marche|encendido|activado|activada|activee|attivata|ativado|activar|acceso|ligado|activer|"
     u"active|"
     u"enable|enabled|enables|start|starts|allumer|attivo|attivato|打开|开|開|オン|入|yes to on"},
    {Word::Off,
     u"off|aus|arret|apagado|desactivado|desactivada|desactivee|disattivata|disattivato|desativado|"
     u"desactivar|spento|desligado|eteint|"
     u"desactiver|disable|disabled|disables|stop|stops|cancel|关闭|关|閉|オフ|切|关掉|關|關閉|desactive|"
     u"disattivo"},
    {Word::PowerOn,
     u"poweron|turn it on|turns it on|switch it on|from standby|standby to on|out of standby|power "
     u"on|einschalten|mise en marche|mettre en "
     u"marche|mise sous tension|encender|encendido|"
     u"accensione|accendere|ligar|turn on|turns on|switch on|switches on|lamp on|开机|開機|电源开|電源入|"
     u"电源打开|電源オン|电源 开|allumage|wake up|wakeup|wake|starts up|start up|allumer le "
     u"projecteur|打开电源"},
    {Word::PowerOff,
     u"poweroff|turn it off|turns it off|switch it off|power off|ausschalten|mise en veille|mettre hors "
     u"tension|spegni|eteindre|mise hors "
     u"tension|apagar|apagado|"
     u"spegnimento|spegnere|desligar|turn off|turns off|switch off|switches off|lamp off|shut down|shutdown|"
     u"power down|关机|關機|电源关|電源切|电源关闭|電源オフ|电源 关|extinction|extinguir|standby|stand by|"
     u"stand-by|go to standby|standby mode|bereitschaft|veille|待机|待機|关闭电源|en veille|sleep "
     u"mode|arret"},
    {Word::Input,
     u"input|inputs|source|sources|eingang|eingange|quelle|eingangsquelle|entree|entrees|entrada|fuente|"
     u"ingresso|sorgente|fonte|channel|input select|input source|source select|signal source|输入|信号源|"
     u"輸入|入力|输入源|入力切換|信源|通道|通道选择|canal"},
    {Word::Computer,
     u"computer|computer in|pc|rgb|vga|d-sub|dsub|d sub|analog rgb|rgbhv|rgb pc|pc rgb|vga in|"
     u"ordinateur|ordenador|computador|computadora|rechner|xga|计算机|電腦|电脑|コンピュータ|コンピューター|"
     u"电脑输入|d-sub15|dsub15|15 pin"},
    {Word::Analog, u"analog|analogue|analogique|analogico|模拟|アナログ"},
    {Word::Digital,
     u"hdmi|dvi|dvi-d|dvi-i|dvi-a|displayport|display port|digital|digitale|numerique|hdbaset|m1-d|dp in|"
     u"数字|デジタル"},
    {Word::Component,
     u"component|comp|komponente|komponenten|composante|composantes|componente|componenti|componentes|ypbpr|"
     u"ycbcr|yuv|ycbcr/ypbpr|色差|分量|コンポーネント|scart|y/pb/pr|y/cb/cr|ypbpr2|ycbcr2"},
    {Word::Video,
     u"video|composite|composite video|cvbs|fbas|av|komposit|compuesto|composito|composita|video composite|"
     u"composto|video in|视频|影像|ビデオ|复合视频|复合"},
    {Word::SVideo,
     u"s-video|svideo|s video|s-vhs|y/c|super video|svhs|s-video in|s端子|s视频|sビデオ|s 视频|s-视频|s "
     u"端子|s - video"},
    {Word::Blank,
     u"blank|blanking|blank screen|blank image|av mute|a/v mute|av-mute|avmute|a/v-mute|a-v mute|picture "
     u"mute|"
     u"picture muting|video mute|image mute|screen mute|pic mute|black screen|blackout|black out|hide|"
     u"bild stumm|dunkeltastung|ecran noir|bild dunkel|bildstummschaltung|bild ausblenden|schwarzbild|"
     u"pantalla negra|pantalla en blanco|imagen muda|schermo nero|tela preta|schermo vuoto|ecran vide|"
     u"tela em branco|pantalla en negro|imagen en negro|leerbildschirm|no show|no-show|picture "
     u"off|hidden|video off mute|display mute|mute picture|"
     u"黑屏|空白|消隐|画面消隐|静像|画面静音|图像静音|影音静音|画像ミュート|映像ミュート|空屏|"
     u"ブランク|av静音|黑画面|画面ミュート|avミュート|消去|coupure "
     u"image|masquage|bildunterdruckung|silenciar video|"
     u"video muet|image muette|silencio av|ocultar|bild aus"},
    {Word::Shutter, u"shutter|dowser|douser|verschluss|obturateur|obturador|otturatore|快门|光闸|シャッター"},
    {Word::Picture,
     u"picture|image|bild|imagen|immagine|imagem|screen|ecran|pantalla|schermo|tela|画面|图像|映像|picture "
     u"on|picture off"},
    {Word::Open, u"open|opens|opened|offnen|offen|ouvrir|ouvert|abrir|abierto|aprire|aperto|aberto|打开快门"},
    {Word::Close,
     u"close|closes|closed|schliessen|geschlossen|fermer|ferme|cerrar|cerrado|chiudere|chiuso|fechar|"
     u"fechado"},
    {Word::Mute, u"mute|muting|stumm|stummschaltung|muet|silencio|silenciar|muto|mudo|静音|ミュート|消音"},
    {Word::Unmute, u"unmute|un-mute|mute cancel|unblank|un-blank"},
    {Word::Sound,
     u"sound|audio|speaker|ton|ton stumm|son|sonido|suono|som|sound mute|audio mute|volume mute|a-mute|"
     u"lautsprecher|音声|声音|音声ミュート|haut-parleur|volume off|volume on|silencioso"},
    {Word::Volume, u"volume|vol|lautstarke|volumen|音量|ボリューム"},
    {Word::Up,
     u"up|plus|increase|increases|increment|inc|raise|raises|louder|lauter|erhohen|hoher|augmenter|"
     u"subir|aumentar|aumenta|aumentare|haut|mas|piu|mais|加|增加|增大|大|アップ|上げ|alto|+"},
    {Word::Down,
     u"down|minus|decrease|decreases|decrement|dec|lower|lowers|quieter|leiser|verringern|senken|reduce|"
     u"diminuer|bajar|disminuir|diminuire|diminuir|bas|menos|meno|减|減|减小|减少|小|ダウン|下げ|baixo|"
     u"abaixar"},
    {Word::Other,
     u"freeze|unfreeze|still|menu|zoom|d.zoom|keystone|aspect|brightness|bright|contrast|auto|automatic|"
     u"timer|"
     u"password|lock|key lock|cursor|pointer|hour|hours|reset|error|eco|color|colour|tint|sharpness|phase|"
     u"frequency|resync|sync|position|resize|pip|p in p|logo|mode select|"
     u"high altitude|altitude|filter|fan|temperature|temp|network|lan|usb|card|memory|viewer|wireless|3d|"
     u"gamma|osd|language|save|preset|default|"
     u"direct power|direct on|always|search|focus|shift|lens|mirror|flip|reverse|enter|exit|left|right|help|"
     u"info|information|test|pattern|closed caption|caption|teletext|message|bnc output|monitor out|output|"
     u"screen normal|normal|wide|4:3|16:9|format|range|seitenverhaltnis|helligkeit|kontrast|standbild|"
     u"einfrieren|congeler|figer|congelar|congela|gel|亮度|对比度|冻结|冻|画面比例|自动|自動|菜单|梯形|"
     u"フリーズ|メニュー|明るさ|blue|white|red|green|black|power management|power saving|power save|standby "
     u"power|"
     u"picture mode|overscan|lamp mode|projection|ceiling|desktop|hohenmodus|lichtquelle|volume level|"
     u"absolute|backlight|treble|bass|balance|noise|saturation|hue|trigger|relay|ip|dhcp|mac|subnet|gateway|"
     u"model|version|serial number|firmware|time|countdown|delay|level|slide|setting|settings|value|values|"
     u"sec|min|minutes|window|split|swap|quick|fast|cooling|warming|warm|ready|failure|fail|"
     u"mosaic|tracking|dynamic|cinema|game|movie|sports|srgb|day|vivid|presentation|swing|mhl2|"
     u"autopower|autosource|off timer|sleep timer|timer off|blank time"},
    {Word::Query,
     u"?|get|read|reads|query|inquiry|ask|request|asks|lesen|abfrage|abfragen|status|current|"
     u"betriebsstatus|lire|consultar|consulta|leggi|check|状态|查询|問い合わせ|状態|zustand|etat|stato|"
     u"acquire|display status|requete|lectura|reading|reported|report"},
    {Word::Toggle,
     u"toggle|toggles|on/off toggle|umschalter|on/off|on / off|on or off|ein/aus|marche/arret|alternar|cycle|"
     u"encendido/apagado|开关|开/关|on-off|on /off|on/ off|入/切|オン/オフ|切替"},
    {Word::Confirm,
     u"confirm|confirmation|confirmation message|twice|asks first|with confirmation message|second|again|"
     u"ruckfrage|bestatigung|confirmacion|确认"},
    {Word::AtOnce,
     u"immediately|immediate|immediatly|at once|without confirmation message|without confirmation|sofort|"
     u"immediat|immediatement|inmediato|no confirmation|without asking|force|forced|forces|quick off|"
     u"ohne ruckfrage|直接|立即"},
    {Word::Unsupported,
     u"not supported|unsupported|not available|n/a|nicht unterstutzt|reserved|not used|non supporte|"
     u"no soportado|不支持|not applicable|dummy"},
};

using Vocabulary = std::unordered_map<std::u16string_view, Word>;

struct Words {
  Vocabulary Meanings;
  std::size_t Longest = 0;
};

const Words& AllWords() {
  static const Words words = [] {
    Words made;
    for (const WordList& list : kVocabulary) {
      std::size_t from = 0;
      while (from < list.Words.size()) {
        const std::size_t end = std::min(list.Words.find(u'|', from), list.Words.size());
        const std::u16string_view word = list.Words.substr(from, end - from);
        made.Meanings.emplace(word, list.Meaning);
        made.Longest = std::max(made.Longest, word.size());
        from = end + 1;
      }
    }
    return made;
  }();
  return words;
}

bool IsLatin(char16_t c) { return IsLower(c) || (c >= 0xDF && c < 0x250); }

// What stands on a label, word by word.
struct Seen {
  std::array<int, static_cast<std::size_t>(Word::Count)> Times{};
  std::vector<int> Numbers;
  std::size_t Unknown = 0;
  std::size_t Words = 0;
  Word Last = Word::Count;
  int NumberOfInput = 0;
  int Channel = 0;

  int& operator[](Word word) { return Times[static_cast<std::size_t>(word)]; }
  bool Has(Word word) const { return Times[static_cast<std::size_t>(word)] > 0; }
  void Add(Word word) {
    ++(*this)[word];
    ++Words;
    Last = word;
  }
};

bool NamesInput(Word word) {
  return word == Word::Computer || word == Word::Digital || word == Word::Video || word == Word::SVideo ||
         word == Word::Component || word == Word::Input || word == Word::Analog;
}

// The longest phrase at `at` that ends where a word ends.
std::size_t PhraseAt(std::u16string_view text, std::size_t at, Word& meaning) {
  const Words& words = AllWords();
  for (std::size_t length = std::min(words.Longest, text.size() - at); length > 0; --length) {
    const std::u16string_view phrase = text.substr(at, length);
    if (IsLatin(phrase.back()) && at + length < text.size() && IsLatin(text[at + length])) continue;
    const auto found = words.Meanings.find(phrase);
    if (found == words.Meanings.end()) continue;
    meaning = found->second;
    return length;
  }
  return 0;
}

// A long word without blanks that is made of known words: "turnsonthepower".
bool AddGluedWords(std::u16string_view word, Seen& seen) {
  constexpr std::size_t kShortest = 6;
  constexpr std::size_t kLongest = 48;
  if (word.size() < kShortest || word.size() > kLongest) return false;
  const Vocabulary& known = AllWords().Meanings;
  // The fewest words that make up what lies before each place.
  std::array<std::size_t, kLongest + 1> fewest;
  std::array<std::size_t, kLongest + 1> begin{};
  fewest.fill(kLongest);
  fewest[0] = 0;
  for (std::size_t end = 1; end <= word.size(); ++end) {
    for (std::size_t from = 0; from < end; ++from) {
      if (fewest[from] + 1 > fewest[end] || !known.contains(word.substr(from, end - from))) continue;
      fewest[end] = fewest[from] + 1;
      begin[end] = from;
    }
  }
  if (fewest[word.size()] > word.size() / 3) return false;
  for (std::size_t end = word.size(); end > 0; end = begin[end]) {
    seen.Add(known.at(word.substr(begin[end], end - begin[end])));
  }
  return true;
}

bool NumberFollows(std::u16string_view text, std::size_t at) {
  if (at < text.size() && text[at] == u' ') ++at;
  return at < text.size() && IsDigit(text[at]);
}

// The name of an input from which extraction has lost a letter: "VA1". Never plain.
bool AddWordWithLoss(std::u16string_view word, bool numbered, Seen& seen) {
  constexpr std::u16string_view kInputs[] = {u"vga",    u"rgb",      u"hdmi",      u"dvi",      u"video",
                                             u"svideo", u"computer", u"component", u"composite"};
  if (word.size() < 2 || (word.size() < 4 && !numbered)) return false;
  for (const std::u16string_view input : kInputs) {
    if (word.size() + 1 != input.size()) continue;
    const auto differs = std::mismatch(word.begin(), word.end(), input.begin());
    if (!std::equal(differs.first, word.end(), differs.second + 1)) continue;
    seen.Add(AllWords().Meanings.at(input));
    ++seen.Unknown;
    return true;
  }
  return false;
}

std::size_t AddNumber(std::u16string_view text, std::size_t at, Seen& seen) {
  std::size_t end = at;
  int value = 0;
  while (end < text.size() && IsDigit(text[end])) {
    value = std::min(9999, value * 10 + (text[end] - u'0'));
    ++end;
  }
  seen.Numbers.push_back(value);
  const bool ofKind = seen.Has(Word::Computer) || seen.Has(Word::Digital) || seen.Has(Word::Video) ||
                      seen.Has(Word::SVideo) || seen.Has(Word::Component) || seen.Has(Word::Analog);
  if (seen.Last == Word::Input && !ofKind && seen.Channel == 0)
    seen.Channel = value;
  else if (NamesInput(seen.Last) && seen.NumberOfInput == 0)
    seen.NumberOfInput = value;
  return end;
}

Seen Look(std::u16string_view label) {
  constexpr std::size_t kLongestLabel = 160;
  std::u16string text(label.substr(0, kLongestLabel));
  // "DataPOWER ON": two cells have run together.
  for (std::size_t at = 3; at + 1 < text.size(); ++at) {
    const bool runs = IsLower(text[at - 1]) && IsLower(text[at - 2]) && IsLower(text[at - 3]) &&
                      IsUpper(text[at]) && IsUpper(text[at + 1]);
    if (runs) text.insert(at, 1, u' ');
  }
  text = FoldLetters(text);
  Seen seen;
  std::size_t at = 0;
  while (at < text.size()) {
    const char16_t c = text[at];
    const bool wordBegins = at == 0 || !IsLatin(text[at - 1]) || !IsLatin(c);
    Word meaning{};
    if (const std::size_t length = wordBegins && c != u' ' ? PhraseAt(text, at, meaning) : 0) {
      seen.Add(meaning);
      at += length;
    } else if (IsDigit(c)) {
      at = AddNumber(text, at, seen);
    } else if (IsLatin(c)) {
      std::size_t end = at;
      while (end < text.size() && IsLatin(text[end])) ++end;
      const std::u16string_view word = std::u16string_view(text).substr(at, end - at);
      // "s-videoinput"
      if (word.size() == 1 && end + 1 < text.size() && text[end] == u'-' && IsLatin(text[end + 1])) {
        std::size_t behind = end + 1;
        while (behind < text.size() && IsLatin(text[behind])) ++behind;
        if (AddGluedWords(std::u16string_view(text).substr(at, behind - at), seen)) {
          at = behind;
          continue;
        }
      }
      if (!AddGluedWords(word, seen) && !AddWordWithLoss(word, NumberFollows(text, end), seen)) {
        ++seen.Unknown;
        ++seen.Words;
        seen.Last = Word::Count;
      }
      at = end;
    } else {
      if (c > 0x2E80) ++seen.Unknown;
      if (c == u'-' && seen.Last == Word::Volume) seen.Add(Word::Down);
      if (c == u'-' && text.substr(at + 1, 4) == u" vol") seen.Add(Word::Down);
      ++at;
    }
  }
  return seen;
}

State StateOf(const Seen& seen, Subject what) {
  const bool on = seen.Has(Word::On) || seen.Has(Word::PowerOn);
  const bool off = seen.Has(Word::Off) || seen.Has(Word::PowerOff) || seen.Has(Word::Unmute);
  if (what == Subject::Blank && seen.Has(Word::Shutter)) {
    if (seen.Has(Word::Close) && !seen.Has(Word::Open)) return State::On;
    if (seen.Has(Word::Open) && !seen.Has(Word::Close)) return State::Off;
  }
  if (what == Subject::Volume) {
    if (seen.Has(Word::Up) == seen.Has(Word::Down)) return State::None;
    return seen.Has(Word::Up) ? State::Up : State::Down;
  }
  if (on == off) {
    const bool open = seen.Has(Word::Open);
    if (on || open == seen.Has(Word::Close)) return State::None;
    return open ? State::Open : State::Close;
  }
  return on ? State::On : State::Off;
}

Subject PictureOrSound(const Seen& seen) {
  if (seen.Has(Word::Sound)) return seen.Has(Word::Blank) ? Subject::Blank : Subject::Sound;
  if (seen.Has(Word::Blank) || seen.Has(Word::Shutter)) return Subject::Blank;
  if (seen.Has(Word::Volume)) return seen.Has(Word::Mute) ? Subject::Sound : Subject::Volume;
  if (seen.Has(Word::Mute) || seen.Has(Word::Unmute)) {
    return seen.Has(Word::Video) || seen.Has(Word::Picture) ? Subject::Blank : Subject::Mute;
  }
  return Subject::None;
}

Subject SubjectOf(const Seen& seen) {
  if (seen.Has(Word::Other) || seen.Has(Word::Query)) return Subject::Other;
  if (const Subject dark = PictureOrSound(seen); dark != Subject::None) return dark;
  if (seen.Has(Word::SVideo)) return Subject::SVideo;
  if (seen.Has(Word::Computer)) return Subject::Computer;
  if (seen.Has(Word::Digital)) return Subject::Digital;
  if (seen.Has(Word::Component)) return Subject::Component;
  if (seen.Has(Word::Video)) return Subject::Video;
  if (seen.Has(Word::Analog)) return Subject::Computer;
  if (seen.Has(Word::Power) || seen.Has(Word::PowerOn) || seen.Has(Word::PowerOff)) return Subject::Power;
  const bool state = seen.Has(Word::On) || seen.Has(Word::Off);
  if (state && seen.Has(Word::Device)) return Subject::Power;
  if (seen.Has(Word::Input)) return Subject::Input;
  return Subject::None;
}

}  // namespace

Function ClassifyLabel(std::u16string_view label) {
  const Seen seen = Look(label);
  Function function;
  function.What = SubjectOf(seen);
  function.To = StateOf(seen, function.What);
  function.Confirms = seen.Has(Word::Confirm) && !seen.Has(Word::AtOnce);
  function.AtOnce = seen.Has(Word::AtOnce);
  function.Both = seen.Has(Word::Toggle) || (seen.Has(Word::On) && seen.Has(Word::Off)) ||
                  (seen.Has(Word::PowerOn) && seen.Has(Word::PowerOff));
  if (function.Both) function.To = State::None;
  function.Unsupported = seen.Has(Word::Unsupported);
  function.DigitalSide = seen.Has(Word::Digital) && seen.Has(Word::Computer);
  // "Shutter on" could be the dark picture or the light one.
  const bool opensOrCloses = seen.Has(Word::Open) || seen.Has(Word::Close);
  const bool unclear = seen.Has(Word::Shutter) && !opensOrCloses;
  function.AlsoComponent = seen.Has(Word::Component) && function.What == Subject::Computer;
  function.Switches = seen.Has(Word::Action) || seen.Has(Word::Input);
  const std::u16string folded = FoldLetters(label);
  for (const std::u16string_view word : {u"power", u"lamp", u"netz", u"电源", u"電源", u"aliment"})
    function.NamesPower |= folded.find(word) != std::u16string::npos;
  function.Unknown = seen.Unknown;
  function.Words = seen.Words;
  function.Number = seen.NumberOfInput;
  if (function.What == Subject::Input || function.What == Subject::None) {
    if (function.Number == 0) function.Number = seen.Channel;
  } else {
    function.Channel = seen.Channel;
  }
  // The last of the digital inputs that an installer would take.
  constexpr int kLastDigital = 5;
  if (function.Number == 0 && folded.find(u"hdbaset") != std::u16string::npos) function.Number = kLastDigital;
  if (function.Number == 0 && function.What == Subject::None && seen.Words == 0 && seen.Numbers.size() == 1) {
    function.Number = seen.Numbers.front();
  }
  function.Plain = seen.Unknown == 0 && !function.AlsoComponent && !unclear;
  return function;
}

Function InContext(const Function& label, const Function& above) {
  Function joined = label;
  const bool stateAlone = label.What == Subject::None && label.To != State::None;
  // "Standby", "Einschalten" below a title.
  const bool powerWord =
      label.What == Subject::Power && label.Words == 1 && !label.NamesPower && above.To == State::None;
  if (stateAlone || (powerWord && above.What == Subject::Blank)) {
    joined.What = above.What == Subject::None ? Subject::None : above.What;
    joined.Plain = label.Plain && above.Plain;
    // A shutter that is closed makes the picture dark.
    if (joined.What == Subject::Blank && label.To == State::Close) joined.To = State::On;
    if (joined.What == Subject::Blank && label.To == State::Open) joined.To = State::Off;
    joined.Confirms |= above.Confirms;
    joined.AtOnce |= above.AtOnce;
  }
  return joined;
}

std::optional<int> SlotOf(const Function& function) {
  if (function.Unsupported || function.Both) return std::nullopt;
  const bool on = function.To == State::On;
  const bool off = function.To == State::Off;
  switch (function.What) {
    case Subject::Power:
      return on ? std::optional(kPowerOnSlot) : off ? std::optional(kPowerOffSlot) : std::nullopt;
    case Subject::Blank:
      return on ? std::optional(kBlankOnSlot) : off ? std::optional(kBlankOffSlot) : std::nullopt;
    case Subject::Volume:
      if (function.To == State::None) return std::nullopt;
      return function.To == State::Up ? kVolumeUpSlot : kVolumeDownSlot;
    case Subject::Computer:
      return off ? std::nullopt : std::optional(function.Number > 1 ? kSecondDataSlot : kDataSlot);
    case Subject::Digital:
      return off ? std::nullopt : std::optional(kSecondDataSlot);
    case Subject::Video:
      return off ? std::nullopt : std::optional(function.Number > 1 ? kSecondVideoSlot : kVideoSlot);
    case Subject::SVideo:
      return off ? std::nullopt : std::optional(kSecondVideoSlot);
    default:
      return std::nullopt;
  }
}

}  // namespace qdm
