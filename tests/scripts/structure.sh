#!/usr/bin/env bash
# Tests that the structure check passes a good tree and reports each fault of a bad one.
set -euo pipefail
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
failures=0

check() { node tools/check-structure.mjs "$tree"; }

# refuses FILE TEXT MESSAGE: FILE with the content TEXT must get MESSAGE. A file name A is made unique with a number.
wanted=()
refuses() {
    local file=${1/\/A./\/A${#wanted[@]}.}
    mkdir -p "$tree/$(dirname "$file")"
    printf '%b\n' "$2" >"$tree/$file"
    wanted+=("$file:$3")
}

mkdir -p "$tree"/core/{foundation,node} "$tree/app" "$tree/tests"
cat >"$tree/core/foundation/Json.h" <<'HEADER'
#pragma once
#include <vector>
// Operations, fields and callables at their limits.
template <class T>
class Json final : public std::vector<int> {
public:
    Json();
    int a() const { return f("{;"); }
    void b(), c(int = 1), d(std::function<void(int)> then = {});
private:
    void hidden(), more();
    int a_ = 0, b_{1};
    static constexpr int limit = 3;
};
enum class Kind { one, two };  // a comment may stand behind
HEADER
printf '#include <boost/json.hpp>\n' >"$tree/core/foundation/Json.cpp"
printf '#include "core/pairing/JoinLink.h"\n#include <sys/stat.h>\nclass HelperNode {};\n' >"$tree/core/node/NodeState.cpp"
printf '#include "core/node/NodeState.h"\n#include "app/platform/linux/Records.h"\n' >"$tree/app/main_darwin.cpp"
printf '#include "app/model/AppModel.h"\n#include <gtest/gtest.h>\n#if 1\n#endif\n' >"$tree/tests/AppModelTest.cpp"
if ! check; then
    echo "a good tree failed"
    failures=1
fi

refuses core/process/A.cpp '#include "core/node/NodeState.h"' 'not on a floor below'
refuses core/pairing/A.cpp '#include "core/driver/DriverHost.h"' 'not on a floor below'
refuses core/node/A.cpp '#include "app/main.h"' 'above core/'
refuses core/node/A.cpp '#include "NodeState.h"' 'from the root'
refuses core/node/A.cpp '#include <QWidget>' 'neither standard'
refuses core/node/A.cpp '#  include <utf8proc.h>' 'third-party'
refuses core/shared/A.cpp 'int a;' 'no floor'
refuses core/node/A.cpp '#ifdef __linux__' 'no #if'
refuses core/node/A.h '// nothing' '#pragma once'
refuses app/model/A.cpp '#include "app/platform/linux/Records.h"' 'only app/main_darwin.cpp'
refuses app/model/A.cpp '#include <QString>' 'toolkit'
refuses app/model/A.cpp '#include "app/console/Console.h"' 'of a face'
refuses app/model/A.cpp '#include "tests/support/Fake.h"' 'in tests/'
refuses tests/A.cpp '#include "devkit/children/Echo.h"' 'in devkit/'
refuses devkit/children/A.cpp '#include "core/foundation/Json.h"' 'programs of their own'
refuses app/model/A.cpp 'const int family = AF_INET;' 'connects to a network'
refuses core/node/NodeManager.cpp '' 'says nothing'
refuses core/node/A.cpp 'class CommonParts {' 'CommonParts'
refuses core/node/A.h "#pragma once$(printf '\\n%.0s' {1..120})" 'more than 120'
refuses core/node/A.cpp "$(printf '\\n%.0s' {1..401})" 'more than 400'
refuses core/node/A.cpp "void A::b() {$(printf '\\n%.0s' {1..70})}" 'A::b has 71 lines'
refuses core/node/A.h '#pragma once\n\nclass Silent {};' 'what Silent is'
refuses core/node/A.h "#pragma once\n// Wide.\nclass Wide {\npublic:\n$(printf 'void a();%.0s' {1..11})\n};" 'Wide has 11 operations'
refuses core/node/A.h "#pragma once\n// Deep.\nclass Deep {\n$(printf 'int a_ = 0;%.0s' {1..11})\n};" 'Deep has 11 fields'
refuses core/node/A.h "#pragma once\n// Deps.\nstruct Deps {\n$(printf 'std::function<void(int)> a;%.0s' {1..9})\n};" 'Deps has 9 callables'

if output=$(check); then
    echo "a bad tree passed"
    failures=1
fi
for pair in "${wanted[@]}"; do
    if ! grep -F "${pair%%:*}:" <<<"$output" | grep -qF -- "${pair#*:}"; then
        echo "didn't report '${pair#*:}' in ${pair%%:*}"
        failures=1
    fi
done

exit $((failures > 0))
