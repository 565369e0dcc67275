// A subscription handle and the gate behind it. The subscription lasts as long
// as the handle: once the last reference is dropped and the drop has returned,
// no callback of it starts; a callback already running finishes first. A
// callback may drop its own handle; the drop then does not wait for itself.
#pragma once

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace nqservice {

// The publisher's side: publishers keep the gate and call through it.
class CSubscriptionGate {
public:
    // Runs fn unless the subscription has ended; false when it has.
    template <typename Fn>
    bool invoke(Fn&& fn)
    {
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            if (!m_open) {
                return false;
            }
            m_running.push_back(std::this_thread::get_id());
        }
        struct Leave {
            CSubscriptionGate* gate;
            ~Leave() { gate->leave(); }
        } leave{this};
        fn();
        return true;
    }
    bool isOpen() const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_open;
    }
    // Ends the subscription and waits for callbacks in flight on other threads.
    void close()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_open = false;
        const auto self = std::this_thread::get_id();
        m_done.wait(lock, [&] {
            for (const auto& id : m_running) {
                if (id != self) {
                    return false;
                }
            }
            return true;
        });
    }

private:
    void leave()
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        const auto self = std::this_thread::get_id();
        for (auto it = m_running.begin(); it != m_running.end(); ++it) {
            if (*it == self) {
                m_running.erase(it);
                break;
            }
        }
        m_done.notify_all();
    }

    mutable std::mutex m_mutex;
    std::condition_variable m_done;
    std::vector<std::thread::id> m_running;
    bool m_open = true;
};

// The subscriber's side: dropping the handle closes the gate.
class SubRequest {
public:
    explicit SubRequest(std::shared_ptr<CSubscriptionGate> gate) : m_gate(std::move(gate)) {}
    SubRequest(const SubRequest&) = delete;
    SubRequest& operator=(const SubRequest&) = delete;
    virtual ~SubRequest()
    {
        if (m_gate) {
            m_gate->close();
        }
    }
    const std::shared_ptr<CSubscriptionGate>& gate() const { return m_gate; }

private:
    std::shared_ptr<CSubscriptionGate> m_gate;
};

typedef boost::shared_ptr<SubRequest> SubRequestPtr;

}  // namespace nqservice
