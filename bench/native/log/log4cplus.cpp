// Measures log4cplus with its macro that formats as printf does, which is quicker than the one with
// a stream.

#include <log4cplus/fileappender.h>
#include <log4cplus/initializer.h>
#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>
#include <log4cplus/spi/loggingevent.h>

#include <memory>

#include "log/log_line.h"

namespace bench {
namespace {

class TakingAppender : public log4cplus::Appender {
public:
    explicit TakingAppender(std::string* text) : text_(text) {}
    ~TakingAppender() override { destructorImpl(); }
    void close() override { closed = true; }

protected:
    void append(const log4cplus::spi::InternalLoggingEvent& event) override {
        if (text_ != nullptr) {
            *text_ = event.getMessage();
        }
    }

private:
    std::string* text_;
};

class Log4cplus {
public:
    explicit Log4cplus(const Destination& there) {
        static const log4cplus::Initializer initializer;
        logger_ = log4cplus::Logger::getInstance("bench");
        logger_.setAdditivity(false);
        logger_.setLogLevel(log4cplus::INFO_LOG_LEVEL);
        logger_.addAppender(Appender(there));
    }
    ~Log4cplus() { logger_.removeAllAppenders(); }
    Log4cplus(const Log4cplus&) = delete;
    Log4cplus& operator=(const Log4cplus&) = delete;

    void Line(const LineValues& values) {
        LOG4CPLUS_INFO_FMT(logger_,
                           "[PLENXSDK] Invalid Args offset:%u rpcReqArgSize:%u rpcMsgSize_:%d "
                           "argLen:%d(%s)",
                           values.offset, values.argumentSize, values.messageSize, values.length,
                           kLineFunction);
    }

private:
    static log4cplus::SharedAppenderPtr Appender(const Destination& there) {
        if (there.file.empty()) {
            return log4cplus::SharedAppenderPtr(new TakingAppender(there.text));
        }
        const bool flushEachLine = true;
        log4cplus::SharedAppenderPtr appender(
            new log4cplus::FileAppender(there.file.string(), std::ios_base::trunc, flushEachLine));
        appender->setLayout(std::make_unique<log4cplus::PatternLayout>(
            "%D{%Y-%m-%d %H:%M:%S.%q} [info] [%t] %m%n"));
        return appender;
    }

    log4cplus::Logger logger_;
};

[[maybe_unused]] const int kRegistered = RegisterLogger<Log4cplus>("log4cplus");

}  // namespace
}  // namespace bench
