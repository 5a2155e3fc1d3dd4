#include "session/modLogger.h"

#include "session/DataFile.h"
#include "session/Platform.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <memory>
#include <new>
#include <spdlog/details/null_mutex.h>
#include <spdlog/logger.h>
#include <spdlog/sinks/base_sink.h>

namespace zul {

namespace {

constexpr const char* ApplicationName = "Zul_Messagebuilder";

/// Appends to a file that belongs to its owner alone, because errors may quote what customers are called. What
/// stands at its place and is no file (a folder, or a pipe that would wait for a reader) is refused at once.
class FileSink final : public spdlog::sinks::base_sink<spdlog::details::null_mutex>
{
public:
    /// @throws Error 75 when the file cannot be opened
    explicit FileSink(const QString& path)
        : m_file(path)
    {
        const QFileInfo place(path);
        if ((place.exists() && !place.isFile()) ||
            !m_file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered,
                         QFileDevice::ReadOwner | QFileDevice::WriteOwner)) {
            throw Error(75, QStringLiteral("Path/File access error"));
        }
    }

protected:
    void sink_it_(const spdlog::details::log_msg& message) override
    {
        spdlog::memory_buf_t line;
        formatter_->format(message, line);
        m_file.write(line.data(), static_cast<qint64>(line.size()));
    }
    void flush_() override {}

private:
    QFile m_file;
};

/// The in-house logging object: an application name, a log file, and a time stamp given before every entry.
class Logger
{
public:
    Logger(std::string applicationName, const QString& file)
        : m_log(std::move(applicationName), std::make_shared<FileSink>(file))
    {
        m_log.set_pattern("%v", spdlog::pattern_time_type::local);
        // A full disk loses the entry; it is nothing to tell the host's console about.
        m_log.set_error_handler([](const std::string&) {});
    }

    void setTimeStamp(const QDateTime& now)
    {
        m_timeStamp = now.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz"));
    }

    void write(const QString& procedureName, const QString& messageText, const QString& detailText)
    {
        QString line = QStringList{m_timeStamp, QString::fromStdString(m_log.name()), procedureName,
                                   messageText, detailText}
                           .join(QStringLiteral(" | "));
        line.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
        line.replace(QLatin1Char('\r'), QLatin1Char(' '));
        line.replace(QLatin1Char('\n'), QLatin1Char(' '));
        const QByteArray bytes = line.toUtf8();
        m_log.log(spdlog::level::err,
                  spdlog::string_view_t(bytes.constData(), static_cast<std::size_t>(bytes.size())));
    }

private:
    spdlog::logger m_log;
    QString m_timeStamp;
};

std::unique_ptr<Logger>& logger()
{
    static std::unique_ptr<Logger> instance;
    return instance;
}

} // namespace

void LogError(const QString& procedureName, const QString& messageText, const QString& /*owner*/,
              long /*flag*/, const QString& detailText) noexcept
{
    try {
        if (!logger()) {
            logger() = std::make_unique<Logger>(
                ApplicationName, platform::nativePath(dataFile(QStringLiteral("Zul_Messagebuilder.log"))));
        }
        logger()->setTimeStamp(QDateTime::currentDateTime());
        logger()->write(procedureName, messageText, detailText);
    } catch (...) {
        // Deliberately silent.
        return;
    }
}

Procedure formProcedure(const QString& form, const QString& name)
{
    return {name, QStringLiteral(") in procedure %1 of Form %2").arg(name, form), form};
}

Procedure moduleProcedure(const QString& module, const QString& name)
{
    return {name, QStringLiteral(") in procedure %1 of Modulo %2").arg(name, module), {}};
}

Procedure classProcedure(const QString& className, const QString& name)
{
    return {name, QStringLiteral(") in procedure %1 of Modulo di classe %2").arg(name, className), {}};
}

QString errorText(const Error& error, const QString& tail)
{
    return QStringLiteral("Error ") + QString::number(error.number()) + QStringLiteral(" (") +
           error.description() + tail;
}

void report(const Procedure& procedure, const Error& error, const QString& detailText) noexcept
{
    try {
        LogError(procedure.name, errorText(error, procedure.tail), procedure.owner, 0, detailText);
    } catch (...) {
        return;
    }
}

Error currentError() noexcept
{
    try {
        throw;
    } catch (const Error& error) {
        return error;
    } catch (const std::bad_alloc&) {
        return {7, QStringLiteral("Out of memory")};
    } catch (const std::exception& exception) {
        return {51, QStringLiteral("Internal error: ") + QString::fromUtf8(exception.what())};
    } catch (...) {
        return {51, QStringLiteral("Internal error")};
    }
}

} // namespace zul
