// Boost.Log with a logger of one thread. What discards is a sink of its own without a lock: with
// no sink at all it would not even compose the line.

#include <boost/log/attributes/clock.hpp>
#include <boost/log/attributes/current_thread_id.hpp>
#include <boost/log/core.hpp>
#include <boost/log/expressions.hpp>
#include <boost/log/sinks.hpp>
#include <boost/log/sources/logger.hpp>
#include <boost/log/sources/record_ostream.hpp>
#include <boost/log/support/date_time.hpp>
#include <boost/make_shared.hpp>
#include <memory>

#include "log/log_line.h"

namespace bench {
namespace {

namespace attributes = boost::log::attributes;
namespace expressions = boost::log::expressions;
namespace sinks = boost::log::sinks;

class TakingBackend : public sinks::basic_sink_backend<sinks::concurrent_feeding> {
public:
    explicit TakingBackend(std::string* text) : text_(text) {}

    void consume(const boost::log::record_view& record) {
        if (text_ != nullptr) {
            *text_ = *record[expressions::smessage];
        }
    }

private:
    std::string* text_;
};

class BoostLog {
public:
    explicit BoostLog(const Destination& there) {
        const auto core = boost::log::core::get();
        if (there.file.empty()) {
            sink_ = boost::make_shared<sinks::unlocked_sink<TakingBackend>>(
                boost::make_shared<TakingBackend>(there.text));
        } else {
            core->add_global_attribute("TimeStamp", attributes::local_clock());
            core->add_global_attribute("ThreadID", attributes::current_thread_id());
            sink_ = FileSink(there);
        }
        core->add_sink(sink_);
    }
    ~BoostLog() {
        boost::log::core::get()->remove_sink(sink_);
        boost::log::core::get()->set_global_attributes({});
    }
    BoostLog(const BoostLog&) = delete;
    BoostLog& operator=(const BoostLog&) = delete;

    void Line(const LineValues& values) {
        BOOST_LOG(logger_) << "[PLENXSDK] Invalid Args offset:" << values.offset
                           << " rpcReqArgSize:" << values.argumentSize
                           << " rpcMsgSize_:" << values.messageSize << " argLen:" << values.length
                           << "(" << kLineFunction << ")";
    }

private:
    static boost::shared_ptr<sinks::sink> FileSink(const Destination& there) {
        const auto backend = boost::make_shared<sinks::text_file_backend>(
            boost::log::keywords::file_name = there.file.string(),
            boost::log::keywords::auto_flush = true);
        auto sink = boost::make_shared<sinks::synchronous_sink<sinks::text_file_backend>>(backend);
        sink->set_formatter(expressions::stream
                            << expressions::format_date_time<boost::posix_time::ptime>(
                                   "TimeStamp", "%Y-%m-%d %H:%M:%S.%f")
                            << " [info] ["
                            << expressions::attr<attributes::current_thread_id::value_type>(
                                   "ThreadID")
                            << "] " << expressions::smessage);
        return sink;
    }

    boost::shared_ptr<sinks::sink> sink_;
    boost::log::sources::logger logger_;
};

[[maybe_unused]] const int registered = RegisterLogger<BoostLog>("Boost.Log");

}  // namespace
}  // namespace bench
