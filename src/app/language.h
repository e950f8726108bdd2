// The language of the windows: English, or what a translation holds that lies beside the program,
// "qdm-editor_de.qm" (script/language makes them). What goes into files stays English.
#pragma once

#include <QLocale>
#include <QString>
#include <QTranslator>

namespace qdm {

class Language {
 public:
  Language() = default;
  ~Language();
  Language(const Language&) = delete;
  Language& operator=(const Language&) = delete;

  // True when the folder has a translation for that locale. Qt's own texts (Yes, Cancel, file dialogs) are
  // taken from the folder or from where Qt keeps them.
  bool Load(const QLocale& locale, const QString& folder);
  // Takes that file.
  bool Load(const QString& file);

 private:
  void Speak();

  QTranslator texts_;
  QTranslator qtTexts_;
};

}  // namespace qdm
