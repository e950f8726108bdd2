// What the editor's start is measured against: the least that a program with a window can do.
#include <QApplication>
#include <QLabel>

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QLabel label(QStringLiteral("A label"));
  label.resize(1366, 730);  // as large as the editor: as much is drawn and sent
  label.show();
  return QApplication::exec();
}
