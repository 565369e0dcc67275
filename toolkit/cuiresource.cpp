#include "toolkit/cuiresource.h"

#include "seam/common.h"
#include "seam/logger.h"
#include "toolkit/cuiresourcechangehandler.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>

// Resources of a static library are registered by hand.
static void initToolkitResources() { Q_INIT_RESOURCE(toolkit); }

namespace WG {

namespace {
const char* const kThemePaths[][2] = {
    {"dark", ":/optdesk/themes/dark.json"},
    {"light", ":/optdesk/themes/light.json"},
};

QPixmap visibleDefaultPixmap()
{
    QPixmap pixmap(16, 16);
    pixmap.fill(CUiResource::defaultColor());
    return pixmap;
}
}  // namespace

CUiResource::CUiResource()
    : m_defaultColor(defaultColor()), m_defaultFont(QStringLiteral("Noto Sans CJK SC")), m_defaultPixmap(visibleDefaultPixmap())
{
    initToolkitResources();
    m_defaultFont.setPixelSize(12);
    for (const auto& entry : kThemePaths) {
        if (auto theme = loadTheme(QString::fromLatin1(entry[1]))) {
            m_themes[QString::fromLatin1(entry[0])] = std::move(theme);
        } else {
            NQ_LOG_ERROR(std::string("theme file unreadable: ") + entry[1]);
        }
    }
    m_current = QStringLiteral("dark");
    auto dark = m_themes.find(m_current);
    m_currentTheme = dark != m_themes.end() ? dark->second.get() : nullptr;
}

CUiResource::~CUiResource() = default;

CUiResource* CUiResource::get() { return utils::CSingletonT<CUiResource>::instance(); }

QStringList CUiResource::themeNames()
{
    QStringList names;
    for (const auto& entry : kThemePaths) {
        names << QString::fromLatin1(entry[0]);
    }
    return names;
}

std::unique_ptr<CUiResource::Theme> CUiResource::loadTheme(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return nullptr;
    }
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
    if (!document.isObject()) {
        return nullptr;
    }
    const QJsonObject root = document.object();
    auto theme = std::make_unique<Theme>();
    theme->name = root.value(QStringLiteral("name")).toString();
    const QJsonObject colors = root.value(QStringLiteral("colors")).toObject();
    for (auto it = colors.begin(); it != colors.end(); ++it) {
        theme->colors[it.key()] = QColor(it.value().toString());
    }
    const QJsonObject fonts = root.value(QStringLiteral("fonts")).toObject();
    for (auto it = fonts.begin(); it != fonts.end(); ++it) {
        const QJsonObject def = it.value().toObject();
        QFont font(def.value(QStringLiteral("family")).toString(QStringLiteral("Noto Sans CJK SC")));
        font.setPixelSize(def.value(QStringLiteral("pixelSize")).toInt(12));
        font.setBold(def.value(QStringLiteral("bold")).toBool(false));
        font.setStyleHint(QFont::SansSerif);
        theme->fonts[it.key()] = font;
    }
    const QJsonObject sizes = root.value(QStringLiteral("sizes")).toObject();
    for (auto it = sizes.begin(); it != sizes.end(); ++it) {
        theme->sizes[it.key()] = it.value().toInt();
    }
    const QJsonObject images = root.value(QStringLiteral("images")).toObject();
    for (auto it = images.begin(); it != images.end(); ++it) {
        QPixmap pixmap(it.value().toString());
        if (!pixmap.isNull()) {
            theme->images[it.key()] = pixmap;
        }
    }
    return theme;
}

const CUiResource::Theme* CUiResource::current() const { return m_currentTheme; }

void CUiResource::reportUnknown(const QString& kind, const QString& key) const
{
    const QString full = kind + QLatin1Char(':') + key;
    if (m_unknown.contains(full)) {
        return;
    }
    m_unknown.insert(full);
    m_unknownOrder << full;
    NQ_LOG_ERROR("unknown resource key " + full.toStdString());
}

const QColor* CUiResource::getColor(const QString& key) const
{
    if (const Theme* theme = current()) {
        auto it = theme->colors.find(key);
        if (it != theme->colors.end()) {
            return &it->second;
        }
    }
    reportUnknown(QStringLiteral("colors"), key);
    return &m_defaultColor;
}

int CUiResource::getSize(const QString& key) const
{
    if (const Theme* theme = current()) {
        auto it = theme->sizes.find(key);
        if (it != theme->sizes.end()) {
            return it->second;
        }
    }
    reportUnknown(QStringLiteral("sizes"), key);
    return defaultSize();
}

const QFont* CUiResource::getFont(const QString& key) const
{
    if (const Theme* theme = current()) {
        auto it = theme->fonts.find(key);
        if (it != theme->fonts.end()) {
            return &it->second;
        }
    }
    reportUnknown(QStringLiteral("fonts"), key);
    return &m_defaultFont;
}

const QPixmap* CUiResource::getPixmap(const QString& key) const
{
    if (const Theme* theme = current()) {
        auto it = theme->images.find(key);
        if (it != theme->images.end()) {
            return &it->second;
        }
    }
    reportUnknown(QStringLiteral("images"), key);
    return &m_defaultPixmap;
}

bool CUiResource::setTheme(const QString& name)
{
    auto theme = m_themes.find(name);
    if (theme == m_themes.end()) {
        return false;
    }
    if (name == m_current) {
        return true;
    }
    m_current = name;
    m_currentTheme = theme->second.get();
    // A handler may destroy others while it reacts; ask the registry before each call.
    for (CUiResourceChangeHandler* handler : CUiResourceChangeHandler::liveHandlers()) {
        if (CUiResourceChangeHandler::isLive(handler)) {
            handler->themeChanged();
        }
    }
    return true;
}

QStringList CUiResource::keys(const QString& kind) const
{
    QStringList result;
    const Theme* theme = current();
    if (theme == nullptr) {
        return result;
    }
    auto collect = [&result](const auto& map) {
        for (const auto& entry : map) {
            result << entry.first;
        }
    };
    if (kind == QLatin1String("colors")) {
        collect(theme->colors);
    } else if (kind == QLatin1String("fonts")) {
        collect(theme->fonts);
    } else if (kind == QLatin1String("sizes")) {
        collect(theme->sizes);
    } else if (kind == QLatin1String("images")) {
        collect(theme->images);
    }
    result.sort();
    return result;
}

bool CUiResource::hasKey(const QString& kind, const QString& key) const { return keys(kind).contains(key); }

}  // namespace WG
