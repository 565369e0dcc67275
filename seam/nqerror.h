// The outcome of a service request: success, or a code with a message.
#pragma once

#include <string>

namespace utils {

class NQError {
public:
    NQError() = default;
    NQError(int code, std::string message) : m_code(code), m_message(std::move(message)) {}

    bool isSuccess() const { return m_code == 0; }
    int errorCode() const { return m_code; }
    std::string errorMsg() const { return m_message; }
    void setError(int code, const std::string& message)
    {
        m_code = code;
        m_message = message;
    }
    void clear()
    {
        m_code = 0;
        m_message.clear();
    }

private:
    int m_code = 0;
    std::string m_message;
};

}  // namespace utils
