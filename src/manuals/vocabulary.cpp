#include "manuals/vocabulary.h"

#include <algorithm>

namespace qdm {
namespace {

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
     u"power|pow|operate|netz|netzschalter|strom|stromversorgung|alimentation|alimentacion|alimentazione|"
     u"energia|"
     u"power supply|power switch|main power|mains|电源|電源|betrieb"},
    {Word::On,
     u"on|ein|an|activado|activada|activee|attivata|ativado|activar|activer|"
     u"active|"
     u"enable|enabled|enables|start|starts|allumer|attivo|attivato|打开|开|開|オン|入|yes to on"},
    {Word::Off,
     u"off|aus|desactivado|desactivada|desactivee|disattivata|disattivato|desativado|"
     u"desactivar|eteint|"
     u"desactiver|disable|disabled|disables|stop|stops|cancel|关闭|关|閉|オフ|切|关掉|關|關閉|desactive|"
     u"disattivo"},
    {Word::PowerOn,
     u"poweron|marche|sous tension|acceso|ligado|turn it on|turns it on|switch it on|from standby|standby to "
     u"on|out of "
     u"standby|power "
     u"on|einschalten|mise en marche|mettre en "
     u"marche|mise sous tension|encender|encendido|"
     u"accensione|accendere|ligar|turn on|turns on|switch on|switches on|lamp on|开机|開機|电源开|電源入|"
     u"电源打开|電源オン|电源 开|allumage|wake up|wakeup|wake|starts up|start up|warm-up|warm up|allumer le "
     u"projecteur|打开电源"},
    {Word::PowerOff,
     u"poweroff|hors tension|spento|desligado|turn it off|turns it off|switch it off|power "
     u"off|ausschalten|mise en "
     u"veille|mettre hors "
     u"tension|spegni|eteindre|mise hors "
     u"tension|apagar|apagado|"
     u"spegnimento|spegnere|desligar|turn off|turns off|switch off|switches off|lamp off|shut down|shutdown|"
     u"power down|cool-down|cool down|关机|關機|电源关|電源切|电源关闭|電源オフ|电源 "
     u"关|extinction|extinguir|standby|stand by|"
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
     u"blank|blanks|blanking|blank screen|blank image|av mute|a/v mute|av-mute|avmute|a/v-mute|a-v "
     u"mute|picture "
     u"mute|"
     u"picture muting|video mute|image mute|screen mute|pic mute|black screen|blackout|black out|hide|"
     u"bild stumm|image noire|dunkeltastung|ecran noir|bild dunkel|bildstummschaltung|bild "
     u"ausblenden|schwarzbild|"
     u"pantalla negra|pantalla en blanco|imagen muda|schermo nero|tela preta|schermo vuoto|ecran vide|"
     u"tela em branco|pantalla en negro|imagen en negro|leerbildschirm|no show|no-show|picture "
     u"off|hidden|video off mute|display mute|mute picture|"
     u"黑屏|空白|消隐|画面消隐|静像|画面静音|图像静音|影音静音|画像ミュート|映像ミュート|空屏|"
     u"ブランク|av静音|黑画面|画面ミュート|avミュート|消去|coupure "
     u"image|coupure de l'image|silenciar imagen|ocultar imagen|masquer|masquage|corte de "
     u"imagen|bildunterdruckung|silenciar video|"
     u"video muet|image muette|silencio av|ocultar"},
    {Word::Shutter, u"shutter|dowser|douser|verschluss|obturateur|obturador|otturatore|快门|光闸|シャッター"},
    {Word::Picture,
     u"picture|image|bild|imagen|immagine|imagem|screen|ecran|pantalla|schermo|tela|画面|图像|映像"},
    {Word::PictureOn,
     u"picture on|shows the picture|show the picture|show picture|picture again|bild ein|bild an|image "
     u"on|screen on|picture visible|retour de l'image|retour image|mostrar imagen|mostra immagine|bild "
     u"sichtbar|bild "
     u"wieder ein|bild einblenden|bild zeigen"},
    {Word::PictureOff,
     u"picture off|blank the picture|blank the image|blank the screen|blanks the picture|blanks the "
     u"image|blanks the screen|bild aus|image off|screen off"},
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
     u"up|plus|increase|increases|increment|inc|raise|raises|erhohen|hoher|augmenter|"
     u"subir|aumentar|aumenta|aumentare|haut|mas|piu|mais|加|增加|增大|大|アップ|上げ|alto|su|+"},
    {Word::Down,
     u"down|minus|decrease|decreases|decrement|dec|lower|lowers|verringern|senken|reduce|"
     u"diminuer|diminuisci|bajar|disminuir|diminuire|diminuir|bas|menos|meno|减|減|减小|减少|小|ダウン|下げ|"
     u"baixo|"
     u"abaixar|giu"},
    {Word::Louder, u"louder|lauter|plus fort|mas alto|piu forte|mais alto"},
    {Word::Quieter, u"quieter|softer|leiser|moins fort|mas bajo|piu piano|mais baixo"},
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
     u"ruckfrage|bestatigung|confirmacion|确认|確認|再发送一次|再發送一次|asks|asks "
     u"on|dialog|prompt|对话框|對話框|mit ruckfrage|avec confirmation"},
    {Word::AtOnce,
     u"immediately|immediate|immediatly|at once|without confirmation message|without confirmation|sofort|"
     u"immediat|immediatement|inmediato|no confirmation|without asking|force|forced|forces|quick off|"
     u"ohne ruckfrage|直接|立即|即|now|at once|right away|de inmediato|tout de suite|subito"},
    {Word::Unsupported,
     u"not supported|unsupported|not available|n/a|nicht unterstutzt|reserved|not used|non supporte|"
     u"no soportado|不支持|not applicable|dummy|non disponible|nicht verfugbar|no disponible|non "
     u"disponibile|not on this model|not for|nicht vorhanden|不可用|无此功能|except|not valid"},
};

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

}  // namespace

const Vocabulary& KnownWords() { return AllWords().Meanings; }

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

}  // namespace qdm
