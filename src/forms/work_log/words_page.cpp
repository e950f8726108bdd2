#include "forms/work_log/words_page.h"

#include <QScrollBar>

#include <string>
#include <utility>

namespace qdm {

WordsPage::WordsPage(QWidget* parent) : QTextBrowser(parent) {
  setObjectName(QStringLiteral("WordsPage"));
  setAccessibleName(tr("The configuration in words"));
  setTabChangesFocus(true);
}

void WordsPage::ShowWords(const PanelConfiguration& configuration) {
  ConfigurationWords words = InWords(configuration);
  if (words == shown_) return;
  const int at = verticalScrollBar()->value();
  QString html;
  for (const std::string& sentence : words.Sentences) {
    html += QStringLiteral("<p>%1</p>").arg(QString::fromStdString(sentence).toHtmlEscaped());
  }
  for (const std::string& remark : words.Remarks) {
    html += QStringLiteral("<p><b>%1</b></p>")
                .arg(tr("Note: %1").arg(QString::fromStdString(remark)).toHtmlEscaped());
  }
  setHtml(html);
  verticalScrollBar()->setValue(at);
  shown_ = std::move(words);
}

}  // namespace qdm
