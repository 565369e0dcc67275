// The simulated market a configuration directory belongs to: its seed and the
// trading date the desk has reached, in market.json, written atomically. The
// paper ledger beside it is dated by that market, so a start never goes back in
// date and never runs the directory on another seed's market.
#pragma once

#include <QDate>
#include <QString>

namespace desk {

struct MarketState {
    unsigned seed = 0;
    QDate tradingDate;
};

class CMarketStateStore {
public:
    enum class LoadResult { Missing, Loaded, Damaged };

    explicit CMarketStateStore(const QString& configDir);

    QString filePath() const;
    // Damaged: the file is left where it is and error says what is wrong with it.
    LoadResult load(MarketState& out, QString* error = nullptr) const;
    bool save(const MarketState& state, QString* error = nullptr) const;

    // What the desk says when a directory's market has another seed than the one asked for.
    static QString seedMismatchText(const QString& configDir, unsigned stored, unsigned asked);

private:
    QString m_dir;
};

}  // namespace desk
