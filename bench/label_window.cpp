// What the editor's start is measured against: the least that a program with a window can do.
#include <QApplication>
#include <QLabel>

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QLabel label(QStringLiteral("A label"));
  label.show();
  return QApplication::exec();
}
