// A process cannot be split here: a host that ends it ends the report too.
#include "host/check/GuardedCheck.h"

#include <exception>

namespace zul::host::check {

GuardedReport checkHostGuarded(const std::function<ComPtr<_SqlConnection>()>& create,
                               const CheckOptions& options, std::chrono::seconds,
                               const std::function<void(const Finding&)>& told)
{
    GuardedReport guarded;
    ComPtr<_SqlConnection> connection;
    try {
        connection = create();
    } catch (const std::exception& error) {
        guarded.notCreated = error.what();
        return guarded;
    } catch (...) {
        guarded.notCreated = "an exception came out of the host when it was loaded";
        return guarded;
    }
    guarded.report = checkHost(connection.get(), options, told);
    return guarded;
}

} // namespace zul::host::check
