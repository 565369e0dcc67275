#include "app/cmarketstatestore.h"

#include "app/cdesklayoutstore.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

namespace desk {

namespace {
constexpr int kStateVersion = 1;
}  // namespace

CMarketStateStore::CMarketStateStore(const QString& configDir) : m_dir(configDir) {}

QString CMarketStateStore::filePath() const
{
    return QDir(m_dir).filePath(QStringLiteral("market.json"));
}

CMarketStateStore::LoadResult CMarketStateStore::load(MarketState& out, QString* error) const
{
    QFile file(filePath());
    if (!file.exists()) {
        return LoadResult::Missing;
    }
    const auto damaged = [&](const QString& why) {
        if (error != nullptr) {
            *error = why;
        }
        return LoadResult::Damaged;
    };
    if (!file.open(QIODevice::ReadOnly)) {
        return damaged(file.errorString());
    }
    QJsonParseError parseError{};
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &parseError);
    if (parseError.error != QJsonParseError::NoError || !document.isObject()) {
        return damaged(QStringLiteral("不是有效的 JSON 对象"));
    }
    const QJsonObject root = document.object();
    const double seed = root.value(QStringLiteral("seed")).toDouble(-1.0);
    const QDate date = QDate::fromString(root.value(QStringLiteral("tradingDate")).toString(), Qt::ISODate);
    if (seed < 0.0 || seed > 4294967295.0 || seed != static_cast<double>(static_cast<unsigned>(seed)) ||
        !date.isValid()) {
        return damaged(QStringLiteral("缺少 seed 或 tradingDate"));
    }
    out.seed = static_cast<unsigned>(seed);
    out.tradingDate = date;
    return LoadResult::Loaded;
}

bool CMarketStateStore::save(const MarketState& state, QString* error) const
{
    QJsonObject root;
    root.insert(QStringLiteral("version"), kStateVersion);
    root.insert(QStringLiteral("seed"), static_cast<double>(state.seed));
    root.insert(QStringLiteral("tradingDate"), state.tradingDate.toString(Qt::ISODate));
    return CDeskLayoutStore::writeJson(filePath(), root, error);
}

QString CMarketStateStore::seedMismatchText(const QString& configDir, unsigned stored, unsigned asked)
{
    return QStringLiteral(
               "配置目录 %1 的模拟行情和模拟账户属于种子 %2，不能以种子 %3 启动。"
               "请用 --config-dir 指定一个新的目录来开始种子 %3 的行情，或去掉 --seed 继续原来的行情。")
        .arg(QDir::toNativeSeparators(configDir))
        .arg(stored)
        .arg(asked);
}

}  // namespace desk
