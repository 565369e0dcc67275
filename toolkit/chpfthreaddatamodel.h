// An IData model whose rows are prepared off the GUI thread. A worker thread
// runs posted jobs (an account reload); doAddDatas and single updates may come
// from any thread. Rows are built where they come in and applied on the GUI
// thread, in the order they were handed over. The worker ends cleanly in the
// destructor: the running job finishes, the queued ones are dropped.
#pragma once

#include "toolkit/chpfdatamodel.h"

#include <QList>
#include <QPair>
#include <QSet>
#include <QString>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

class QObject;

namespace TC {

class CHpfThreadDataModel : public CHpfDataModel {
public:
    CHpfThreadDataModel(int dataType, nqservice::EVqTraderType traderType);
    ~CHpfThreadDataModel() override;

    // Runs job on the worker thread after the jobs before it.
    void postJob(std::function<void()> job);
    // Adds or replaces rows; records that fail the filter (or the model's
    // filters) are left out. Callable from any thread.
    void doAddDatas(const QList<QPair<boost::shared_ptr<nqservice::IData>, QString>>& datas, int sortColumn,
                    QPair<WG::EFilterType, QSet<QString>>& filter);
    // One record, with a fixed text colour key. Callable from any thread.
    void updateDataFixColorForSortTime(const boost::shared_ptr<nqservice::IData>& data, const QString& colorKey);
    // From the GUI thread at once; from another thread queued behind earlier updates.
    bool removeDataByKey(const std::string& key) override;
    int removeDatasByKeys(const std::vector<std::string>& keys) override;

    // For tests and shutdown: waits until no job is queued or running and the
    // handed-over rows are applied (runs the GUI event loop when called on it).
    bool waitForIdle(int timeoutMs);
    int pendingUpdates() const;

protected:
    // Runs apply on the GUI thread: at once there, else queued behind the earlier applies.
    void applyOnGui(std::function<void()> apply);
    bool onGuiThread() const;

private:
    void workerLoop();

    QObject* m_receiver;
    std::thread::id m_guiThread;
    mutable std::mutex m_jobMutex;
    std::condition_variable m_jobReady;
    std::deque<std::function<void()>> m_jobs;
    bool m_busy = false;
    bool m_stop = false;
    int m_pendingApplies = 0;
    std::thread m_worker;
};

}  // namespace TC
