#include "app/language.h"

#include "base/words.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QLibraryInfo>

#include <string>
#include <string_view>

namespace qdm {
namespace {

// script/language gathers the core's sentences under this name.
std::string FromCore(std::string_view english, int count) {
  const QByteArray key(english.data(), static_cast<qsizetype>(english.size()));
  return QCoreApplication::translate("Core", key.constData(), nullptr, count).toStdString();
}

}  // namespace

Language::~Language() {
  if (!texts_.isEmpty()) SetDictionary(nullptr);
}

bool Language::Load(const QLocale& locale, const QString& folder) {
  const auto load = [&locale](QTranslator& into, const char* name, const QString& from) {
    return into.load(locale, QLatin1String(name), QStringLiteral("_"), from);
  };
  if (!load(texts_, "qdm-editor", folder)) return false;
  if (load(qtTexts_, "qtbase", folder) ||
      load(qtTexts_, "qtbase", QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    QCoreApplication::installTranslator(&qtTexts_);
  }
  Speak();
  return true;
}

bool Language::Load(const QString& file) {
  if (!texts_.load(file)) return false;
  Speak();
  return true;
}

void Language::Speak() {
  QCoreApplication::installTranslator(&texts_);
  SetDictionary(FromCore);
}

}  // namespace qdm
