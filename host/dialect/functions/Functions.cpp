#include "host/dialect/functions/Functions.h"

#include "host/dialect/functions/Conversion.h"
#include "host/dialect/functions/DateFunctions.h"
#include "host/dialect/functions/NumberFunctions.h"
#include "host/dialect/functions/Operators.h"
#include "host/dialect/functions/TextFunctions.h"

#include <vector>

namespace zul::dialect {

std::span<const Function> functions()
{
    static const std::vector<Function> all = [] {
        std::vector<Function> functions;
        for (const std::span<const Function> kind :
             {operators(), textFunctions(), numberFunctions(), dateFunctions(), conversions()}) {
            functions.insert(functions.end(), kind.begin(), kind.end());
        }
        return functions;
    }();
    return all;
}

Result callFunction(std::string_view name, Arguments arguments)
{
    const auto count = static_cast<int>(arguments.size());
    for (const Function& function : functions()) {
        if (name == function.name) {
            if (count < function.least || (function.most >= 0 && count > function.most)) {
                throw FunctionError("wrong number of arguments to " + std::string(name));
            }
            return function.call(arguments);
        }
    }
    throw FunctionError("no such function: " + std::string(name));
}

} // namespace zul::dialect
