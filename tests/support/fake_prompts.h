// Answers boxes and file dialogs from lists, in order, and keeps what was shown. A question without an answer
// fails the test.
#pragma once

#include "forms/shared/user_prompts.h"

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace qdm {

class FakePrompts : public UserPrompts {
 public:
  std::vector<Message> Shown;                // boxes and questions, in order
  std::deque<bool> Answers;                  // to AskYesNo
  std::deque<SaveAnswer> SaveAnswers;        // to AskSave
  std::deque<QString> Choices;               // to Choose: the pressed button's text
  std::deque<std::optional<QString>> Files;  // to OpenFile and SaveFile
  std::vector<std::string> FileTitles;       // of the file dialogs, in order
  QString Folder;                            // where the last file dialog began
  std::function<void()> WhileShowing;        // what the user does to other windows while a box is open

  void Show(QWidget*, const Message& message) override {
    Shown.push_back(message);
    if (WhileShowing) WhileShowing();
  }
  bool AskYesNo(QWidget*, const Message& question) override {
    Shown.push_back(question);
    return Next(Answers, "a question: " + question.Text).value_or(false);
  }
  SaveAnswer AskSave(QWidget*, const Message& question) override {
    Shown.push_back(question);
    return Next(SaveAnswers, "a question: " + question.Text).value_or(SaveAnswer::Cancel);
  }
  int Choose(QWidget*, const Message& question, const QStringList& answers, int safe) override {
    Shown.push_back(question);
    const auto choice = Next(Choices, "a question: " + question.Text);
    if (!choice) return safe;
    EXPECT_TRUE(answers.contains(*choice)) << choice->toStdString();
    return static_cast<int>(answers.indexOf(*choice));
  }
  std::optional<QString> OpenFile(QWidget*, const QString& title, const char*,
                                  const QString& folder) override {
    FileTitles.push_back(title.toStdString());
    Folder = folder;
    return Next(Files, "an open dialog").value_or(std::nullopt);
  }
  std::optional<QString> SaveFile(QWidget*, const QString& title, const char*,
                                  const QString& folder) override {
    FileTitles.push_back(title.toStdString());
    Folder = folder;
    return Next(Files, "a save dialog").value_or(std::nullopt);
  }

  std::string LastText() const { return Shown.empty() ? std::string() : Shown.back().Text; }

 private:
  template <class T>
  static std::optional<T> Next(std::deque<T>& answers, const std::string& asked) {
    if (answers.empty()) {
      ADD_FAILURE() << "nobody answers " << asked;
      return std::nullopt;
    }
    T answer = std::move(answers.front());
    answers.pop_front();
    return answer;
  }
};

}  // namespace qdm
