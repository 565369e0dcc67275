// The desk's settings of the Greeks import: on or off, and the directory it
// watches. Writes the user's trade settings (member 160) and tells the panels
// and import threads through the trade client's sigAutoImportExGreeksChanged.
// It does not touch the files or the imported Greeks themselves.
#pragma once

#include <QDialog>
#include <QString>

class QCheckBox;
class QDialogButtonBox;
class QLineEdit;
class QPushButton;

namespace desk {

class CGreeksImportSettingsDialog : public QDialog {
    Q_OBJECT
public:
    // Shows the user's present settings.
    explicit CGreeksImportSettingsDialog(QWidget* parent = nullptr);

    bool importEnabled() const;
    void setImportEnabled(bool enabled);
    QString directory() const;
    void setDirectory(const QString& directory);

    // Writes the choice into the user's trade settings, has them saved, and
    // emits sigAutoImportExGreeksChanged. False when no user settings are installed.
    bool apply();

public slots:
    // Applies, then closes; an import switched on without a directory stays open.
    void accept() override;

private slots:
    void slotBrowse();
    void slotEnabledChanged();

private:
    QCheckBox* enableBox = nullptr;
    QLineEdit* directoryEdit = nullptr;
    QPushButton* browseButton = nullptr;
    QDialogButtonBox* buttons = nullptr;
};

}  // namespace desk
