#include "app/desktop/desktop_folder_chooser.h"

#include <QDir>
#include <QFileDialog>

namespace tarnby {

void DesktopFolderChooser::choose(QWidget* over, const FolderRequest& request, Done done) {
  const auto start = QString::fromLocal8Bit(QByteArray::fromStdString(request.starting_folder.path()));
  auto* dialog = new QFileDialog(over, request.title, start);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setFileMode(QFileDialog::Directory);  // one folder, no files
  dialog->setOption(QFileDialog::ShowDirsOnly);
  dialog->setFilter(QDir::Dirs | QDir::NoDotAndDotDot | QDir::Drives);  // nothing hidden
  dialog->setLabelText(QFileDialog::Accept, request.prompt);
  QObject::connect(dialog, &QDialog::finished, dialog, [dialog, done = std::move(done)](int result) {
    const QStringList picked = dialog->selectedFiles();
    const bool confirmed = result == QDialog::Accepted && !picked.isEmpty();
    done(confirmed ? std::optional(Url::file(picked.first().toLocal8Bit().toStdString())) : std::nullopt);
  });
  dialog->open();
}

}  // namespace tarnby
