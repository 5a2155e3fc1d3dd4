#include "host/services/AppPost.h"

#include "base/DateText.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMessageAuthenticationCode>

#include <curl/curl.h>

#include <cmath>
#include <memory>

namespace zul::host {

namespace {

constexpr std::size_t longestAnswer = 4096;

// Keeps the front of the answer, which as a rule says what was wrong, and lets the rest pass.
std::size_t takeAnswer(char* data, std::size_t size, std::size_t count, void* user)
{
    auto& answer = *static_cast<std::string*>(user);
    const std::size_t length = size * count;
    if (answer.size() < longestAnswer) {
        answer.append(data, std::min(length, longestAnswer - answer.size()));
    }
    return length;
}

QString isoText(double date)
{
    const QString text = QString::fromStdString(formatDate(date)).replace(' ', 'T');
    const QDateTime local = QDateTime::fromString(text, Qt::ISODateWithMs);
    return local.toOffsetFromUtc(local.offsetFromUtc()).toString(Qt::ISODateWithMs);
}

// One line of printable text for the list of outcomes.
std::string oneLine(const std::string& answer)
{
    return QString::fromUtf8(answer.data(), static_cast<qsizetype>(answer.size()))
        .simplified()
        .left(200)
        .toStdString();
}

struct EasyCleanup
{
    void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
};
struct ListCleanup
{
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};

} // namespace

std::string appMessageBody(const AppMessage& message)
{
    QJsonObject object;
    object["slug"] = QString::fromStdString(message.slug);
    object["email"] = message.email ? QJsonValue(QString::fromStdString(*message.email)) : QJsonValue();
    object["text"] = QString::fromStdString(message.text);
    object["date"] = isoText(message.when);
    return QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString();
}

std::string appSignature(const std::string& body, const std::string& salt)
{
    return QMessageAuthenticationCode::hash(QByteArray::fromStdString(body), QByteArray::fromStdString(salt),
                                            QCryptographicHash::Sha256)
        .toHex()
        .toStdString();
}

std::string postAppMessage(const std::string& url, const std::string& salt, const AppMessage& message,
                           std::chrono::milliseconds patience, bool* timedOut)
{
    static const CURLcode ready = curl_global_init(CURL_GLOBAL_DEFAULT);
    const std::unique_ptr<CURL, EasyCleanup> handle(ready == CURLE_OK ? curl_easy_init() : nullptr);
    if (!handle) {
        return "libreria di rete non disponibile";
    }
    const std::string body = appMessageBody(message);
    const std::string signature = "X-Signature: " + appSignature(body, salt);
    std::unique_ptr<curl_slist, ListCleanup> headers(
        curl_slist_append(nullptr, "Content-Type: application/json"));
    headers.reset(curl_slist_append(headers.release(), signature.c_str()));
    // Without this the library would first ask whether it may send a larger body, and wait.
    headers.reset(curl_slist_append(headers.release(), "Expect:"));
    std::string answer;
    char reason[CURL_ERROR_SIZE] = "";
    CURL* const curl = handle.get();
    curl_easy_setopt(curl, CURLOPT_URL, url.c_str());
    curl_easy_setopt(curl, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(curl, CURLOPT_HTTPHEADER, headers.get());
    curl_easy_setopt(curl, CURLOPT_POSTFIELDS, body.c_str());
    curl_easy_setopt(curl, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, takeAnswer);
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, &answer);
    curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, reason);
    curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(patience.count() / 3));
    curl_easy_setopt(curl, CURLOPT_TIMEOUT_MS, static_cast<long>(patience.count()));
    const CURLcode result = curl_easy_perform(curl);
    if (timedOut != nullptr) {
        *timedOut = result == CURLE_OPERATION_TIMEDOUT;
    }
    if (result != CURLE_OK) {
        return reason[0] != '\0' ? reason : curl_easy_strerror(result);
    }
    long status = 0;
    curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &status);
    if (status >= 200 && status < 300) {
        return {};
    }
    std::string error = "il servizio app ha risposto " + std::to_string(status);
    if (const std::string text = oneLine(answer); !text.empty()) {
        error += ": " + text;
    }
    return error;
}

} // namespace zul::host
