// A window of the size of ours with nothing in it: the least that the toolkit takes to start.
#include <QApplication>
#include <QWidget>

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QWidget window;
  window.resize(960, 640);
  window.show();
  return QApplication::exec();
}
