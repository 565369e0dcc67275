#include "app/cdesklayoutstore.h"

#include "seam/logger.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QTemporaryFile>

namespace desk {

namespace {
constexpr int kLayoutVersion = 1;
const QString kFileName = QStringLiteral("layout.json");
}  // namespace

CDeskLayoutStore::CDeskLayoutStore(const QString& configDir) : m_dir(configDir) {}

QString CDeskLayoutStore::filePath() const { return QDir(m_dir).filePath(kFileName); }


namespace {
bool parseLayout(const QByteArray& bytes, DeskLayout& out)
{
    QJsonParseError parseError{};
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &parseError);
    if (parseError.error != QJsonParseError::NoError || !document.isObject()) {
        return false;
    }
    const QJsonObject root = document.object();
    if (root.value(QStringLiteral("version")).toInt(-1) != kLayoutVersion) {
        return false;
    }
    const QJsonValue panels = root.value(QStringLiteral("panels"));
    const QJsonValue params = root.value(QStringLiteral("params"));
    if (!panels.isArray() || !params.isObject()) {
        return false;
    }
    DeskLayout layout;
    layout.geometry = QByteArray::fromBase64(root.value(QStringLiteral("geometry")).toString().toLatin1());
    layout.dockState = QByteArray::fromBase64(root.value(QStringLiteral("dockState")).toString().toLatin1());
    layout.theme = root.value(QStringLiteral("theme")).toString();
    for (const QJsonValue& name : panels.toArray()) {
        if (!name.isString()) {
            return false;
        }
        layout.panels << name.toString();
    }
    const QJsonObject paramObject = params.toObject();
    for (auto it = paramObject.begin(); it != paramObject.end(); ++it) {
        if (!it.value().isString()) {
            return false;
        }
        layout.panelParams.insert(it.key(), it.value().toString());
    }
    const QJsonValue underlyings = root.value(QStringLiteral("underlyings"));
    if (!underlyings.isUndefined()) {
        if (!underlyings.isObject()) {
            return false;
        }
        const QJsonObject object = underlyings.toObject();
        for (auto it = object.begin(); it != object.end(); ++it) {
            if (!it.value().isString()) {
                return false;
            }
            layout.underlyings.insert(it.key(), it.value().toString());
        }
    }
    // Absent in layouts saved before panes were kept.
    const QJsonValue splitters = root.value(QStringLiteral("splitters"));
    if (!splitters.isUndefined()) {
        if (!splitters.isObject()) {
            return false;
        }
        const QJsonObject object = splitters.toObject();
        for (auto it = object.begin(); it != object.end(); ++it) {
            if (!it.value().isArray()) {
                return false;
            }
            QList<QByteArray> states;
            for (const QJsonValue& state : it.value().toArray()) {
                if (!state.isString()) {
                    return false;
                }
                states << QByteArray::fromBase64(state.toString().toLatin1());
            }
            layout.splitters.insert(it.key(), states);
        }
    }
    out = layout;
    return true;
}
}  // namespace

CDeskLayoutStore::LoadResult CDeskLayoutStore::load(DeskLayout& out, QString* setAsidePath) const
{
    QFile file(filePath());
    if (!file.exists()) {
        return LoadResult::Missing;
    }
    QByteArray bytes;
    if (file.open(QIODevice::ReadOnly)) {
        bytes = file.readAll();
        file.close();
    }
    if (!bytes.isEmpty() && parseLayout(bytes, out)) {
        return LoadResult::Loaded;
    }
    const QString aside = filePath() + QStringLiteral(".damaged-") +
                          QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-hhmmss-zzz"));
    if (!QFile::rename(filePath(), aside)) {
        NQ_LOG_ERROR("cannot set the damaged layout aside: " + filePath().toStdString());
    }
    NQ_LOG_ERROR("damaged layout set aside as " + aside.toStdString());
    if (setAsidePath != nullptr) {
        *setAsidePath = aside;
    }
    return LoadResult::Damaged;
}

bool CDeskLayoutStore::save(const DeskLayout& layout, QString* error) const
{
    QJsonObject root;
    root.insert(QStringLiteral("version"), kLayoutVersion);
    root.insert(QStringLiteral("geometry"), QString::fromLatin1(layout.geometry.toBase64()));
    root.insert(QStringLiteral("dockState"), QString::fromLatin1(layout.dockState.toBase64()));
    root.insert(QStringLiteral("theme"), layout.theme);
    root.insert(QStringLiteral("panels"), QJsonArray::fromStringList(layout.panels));
    QJsonObject params;
    for (auto it = layout.panelParams.begin(); it != layout.panelParams.end(); ++it) {
        params.insert(it.key(), it.value());
    }
    root.insert(QStringLiteral("params"), params);
    QJsonObject underlyings;
    for (auto it = layout.underlyings.begin(); it != layout.underlyings.end(); ++it) {
        underlyings.insert(it.key(), it.value());
    }
    root.insert(QStringLiteral("underlyings"), underlyings);
    QJsonObject splitters;
    for (auto it = layout.splitters.begin(); it != layout.splitters.end(); ++it) {
        QJsonArray states;
        for (const QByteArray& state : it.value()) {
            states.append(QString::fromLatin1(state.toBase64()));
        }
        splitters.insert(it.key(), states);
    }
    root.insert(QStringLiteral("splitters"), splitters);

    return writeJson(filePath(), root, error);
}

bool CDeskLayoutStore::writeJson(const QString& path, const QJsonObject& root, QString* error)
{
    // Written beside and renamed over: a crash mid-write leaves the old file whole.
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        if (error != nullptr) {
            *error = file.errorString();
        }
        return false;
    }
    file.write(QJsonDocument(root).toJson(QJsonDocument::Indented));
    if (!file.commit()) {
        if (error != nullptr) {
            *error = file.errorString();
        }
        return false;
    }
    return true;
}

bool CDeskLayoutStore::ensureWritableDir(const QString& dir, QString* error)
{
    QFileInfo info(dir);
    if (info.exists() && !info.isDir()) {
        *error = QStringLiteral("%1 exists and is not a directory").arg(dir);
        return false;
    }
    if (!QDir().mkpath(dir)) {
        *error = QStringLiteral("cannot create the directory %1").arg(dir);
        return false;
    }
    QTemporaryFile probe(QDir(dir).filePath(QStringLiteral(".write-probe-XXXXXX")));
    if (!probe.open()) {
        *error = QStringLiteral("cannot write in %1: %2").arg(dir, probe.errorString());
        return false;
    }
    return true;
}

}  // namespace desk
