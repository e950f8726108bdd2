// The configuration in words, beside its options: what it does and what makes no sense together, always as
// the options are now.
#pragma once

#include "config/configuration_sentences.h"

#include <QTextBrowser>

namespace qdm {

class WordsPage : public QTextBrowser {
  Q_OBJECT

 public:
  explicit WordsPage(QWidget* parent = nullptr);

  void ShowWords(const PanelConfiguration& configuration);

 private:
  ConfigurationWords shown_;
};

}  // namespace qdm
