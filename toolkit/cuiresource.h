// Colours, fonts, sizes and images by resource key, from the current theme.
// Callers resolve keys at paint time: a theme change gives a key another value.
// An unknown key gives a visible default and one log line.
#pragma once

#include <QColor>
#include <QFont>
#include <QHash>
#include <QPixmap>
#include <QSet>
#include <QString>
#include <QStringList>

#include <map>
#include <memory>
#include <unordered_map>

namespace WG {

class CUiResource {
public:
    CUiResource();
    ~CUiResource();
    CUiResource(const CUiResource&) = delete;
    CUiResource& operator=(const CUiResource&) = delete;

    // The process-wide instance (utils::CSingletonT<WG::CUiResource>::instance()).
    static CUiResource* get();

    // The returned pointers stay valid while this object lives, across theme changes.
    const QColor* getColor(const QString& key) const;
    int getSize(const QString& key) const;
    const QFont* getFont(const QString& key) const;
    const QPixmap* getPixmap(const QString& key) const;

    // Built-in themes: "dark" (the default trading theme) and "light".
    static QStringList themeNames();
    QString themeName() const { return m_current; }
    // Switches the theme and notifies every live CUiResourceChangeHandler. False for an unknown theme.
    bool setTheme(const QString& name);

    // Keys of a kind ("colors", "fonts", "sizes", "images") that the current theme defines.
    QStringList keys(const QString& kind) const;
    bool hasKey(const QString& kind, const QString& key) const;
    // Keys that were asked for but are defined by no theme, in the order first asked.
    QStringList unknownKeys() const { return m_unknownOrder; }

    // The visible stand-ins for unknown keys.
    static QColor defaultColor() { return QColor(255, 0, 255); }
    static int defaultSize() { return 20; }

private:
    // Every cell of every table asks for a few keys at each paint: hashed, not
    // ordered. A theme never changes once loaded, so its values stay put.
    struct KeyHash {
        std::size_t operator()(const QString& key) const { return qHash(key); }
    };
    template <typename T>
    using KeyMap = std::unordered_map<QString, T, KeyHash>;
    struct Theme {
        QString name;
        KeyMap<QColor> colors;
        KeyMap<QFont> fonts;
        KeyMap<int> sizes;
        KeyMap<QPixmap> images;
    };
    static std::unique_ptr<Theme> loadTheme(const QString& path);
    const Theme* current() const;
    void reportUnknown(const QString& kind, const QString& key) const;

    std::map<QString, std::unique_ptr<Theme>> m_themes;
    QString m_current;
    const Theme* m_currentTheme = nullptr;
    QColor m_defaultColor;
    QFont m_defaultFont;
    QPixmap m_defaultPixmap;
    mutable QSet<QString> m_unknown;
    mutable QStringList m_unknownOrder;
};

}  // namespace WG
