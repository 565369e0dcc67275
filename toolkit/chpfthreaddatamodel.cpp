#include "toolkit/chpfthreaddatamodel.h"

#include "toolkit/chpfdata.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMetaObject>
#include <QObject>
#include <QThread>

#include <boost/make_shared.hpp>

namespace TC {

CHpfThreadDataModel::CHpfThreadDataModel(int dataType, nqservice::EVqTraderType traderType)
    : CHpfDataModel(dataType, traderType), m_receiver(new QObject), m_guiThread(std::this_thread::get_id())
{
    m_worker = std::thread([this] { workerLoop(); });
}

CHpfThreadDataModel::~CHpfThreadDataModel()
{
    {
        std::lock_guard<std::mutex> lock(m_jobMutex);
        m_stop = true;
        m_jobs.clear();
    }
    m_jobReady.notify_all();
    if (m_worker.joinable()) {
        m_worker.join();
    }
    // Deleting the receiver drops the applies still queued for it.
    delete m_receiver;
}

bool CHpfThreadDataModel::onGuiThread() const { return std::this_thread::get_id() == m_guiThread; }

void CHpfThreadDataModel::postJob(std::function<void()> job)
{
    {
        std::lock_guard<std::mutex> lock(m_jobMutex);
        if (m_stop) {
            return;
        }
        m_jobs.push_back(std::move(job));
    }
    m_jobReady.notify_one();
}

void CHpfThreadDataModel::workerLoop()
{
    for (;;) {
        std::function<void()> job;
        {
            std::unique_lock<std::mutex> lock(m_jobMutex);
            m_jobReady.wait(lock, [this] { return m_stop || !m_jobs.empty(); });
            if (m_stop) {
                return;
            }
            job = std::move(m_jobs.front());
            m_jobs.pop_front();
            m_busy = true;
        }
        job();
        {
            std::lock_guard<std::mutex> lock(m_jobMutex);
            m_busy = false;
        }
    }
}

void CHpfThreadDataModel::applyOnGui(std::function<void()> apply)
{
    if (onGuiThread()) {
        apply();
        return;
    }
    {
        std::lock_guard<std::mutex> lock(m_jobMutex);
        ++m_pendingApplies;
    }
    QMetaObject::invokeMethod(
        m_receiver,
        [this, apply] {
            apply();
            std::lock_guard<std::mutex> lock(m_jobMutex);
            --m_pendingApplies;
        },
        Qt::QueuedConnection);
}

void CHpfThreadDataModel::doAddDatas(const QList<QPair<boost::shared_ptr<nqservice::IData>, QString>>& datas,
                                     int sortColumn, QPair<WG::EFilterType, QSet<QString>>& filter)
{
    // Rows are built here, on the caller's thread; the GUI thread only stores them.
    QList<WG::IBaseHpfTableDataPtr> rows;
    rows.reserve(datas.size());
    const int filterColumn = sortColumn;
    for (const auto& entry : datas) {
        if (!entry.first) {
            continue;
        }
        auto row = boost::make_shared<CHpfData>(entry.first, this, entry.second);
        if (filter.first != WG::FLT_NONE && filterColumn >= 0) {
            const bool inSet = filter.second.contains(row->getFilterQString(filterColumn));
            if ((filter.first == WG::FLT_INCLUDE && !inSet) || (filter.first == WG::FLT_EXCLUDE && inSet)) {
                continue;
            }
        }
        if (!passesFilter(row)) {
            continue;
        }
        rows.append(row);
    }
    applyOnGui([this, rows] {
        for (const auto& row : rows) {
            addData(row);
        }
    });
}

void CHpfThreadDataModel::updateDataFixColorForSortTime(const boost::shared_ptr<nqservice::IData>& data,
                                                        const QString& colorKey)
{
    if (!data) {
        return;
    }
    WG::IBaseHpfTableDataPtr row = boost::make_shared<CHpfData>(data, this, colorKey);
    applyOnGui([this, row] { addData(row); });
}

bool CHpfThreadDataModel::removeDataByKey(const std::string& key)
{
    if (onGuiThread()) {
        return CHpfDataModel::removeDataByKey(key);
    }
    applyOnGui([this, key] { CHpfDataModel::removeDataByKey(key); });
    return true;
}

int CHpfThreadDataModel::removeDatasByKeys(const std::vector<std::string>& keys)
{
    if (onGuiThread()) {
        return CHpfDataModel::removeDatasByKeys(keys);
    }
    applyOnGui([this, keys] { CHpfDataModel::removeDatasByKeys(keys); });
    return static_cast<int>(keys.size());
}

int CHpfThreadDataModel::pendingUpdates() const
{
    std::lock_guard<std::mutex> lock(m_jobMutex);
    return static_cast<int>(m_jobs.size()) + (m_busy ? 1 : 0) + m_pendingApplies;
}

bool CHpfThreadDataModel::waitForIdle(int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    while (pendingUpdates() > 0) {
        if (timer.elapsed() > timeoutMs) {
            return false;
        }
        if (onGuiThread()) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        } else {
            QThread::msleep(1);
        }
    }
    return true;
}

}  // namespace TC
