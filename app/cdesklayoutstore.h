// The desk's saved layout: window geometry, dock state, theme and every panel's
// parameter string, in one JSON file written atomically. A damaged file is set
// aside under another name and never overwritten.
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QStringList>

namespace desk {

struct DeskLayout {
    QByteArray geometry;                // QMainWindow::saveGeometry
    QByteArray dockState;               // QMainWindow::saveState
    QString theme;                      // "dark" or "light"
    QStringList panels;                 // panel names, in docking order
    QMap<QString, QString> panelParams; // panel name -> param()
    QMap<QString, QString> underlyings; // panel name -> stock key of its chosen underlying
    QMap<QString, QList<QByteArray>> splitters; // panel name -> QSplitter::saveState of each of its splitters
};

class CDeskLayoutStore {
public:
    enum class LoadResult { Missing, Loaded, Damaged };

    explicit CDeskLayoutStore(const QString& configDir);

    QString filePath() const;
    // Damaged: the file is renamed aside (setAsidePath tells where) and out is left as it was.
    LoadResult load(DeskLayout& out, QString* setAsidePath = nullptr) const;
    bool save(const DeskLayout& layout, QString* error = nullptr) const;

    // Creates the directory if needed and proves it writable; error says why not.
    static bool ensureWritableDir(const QString& dir, QString* error);
    // Writes a JSON document atomically (QSaveFile); false with the reason otherwise.
    static bool writeJson(const QString& path, const QJsonObject& root, QString* error);

private:
    QString m_dir;
};

}  // namespace desk
