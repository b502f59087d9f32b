#!/usr/bin/env bash
# check-hardening.sh PROGRAM...: checks that the programs have the protections of a release build.
set -euo pipefail
export LC_ALL=C
failed=0
for program in "$@"; do
    facts=$(readelf --wide --file-header --program-headers --dynamic --notes --dyn-syms "$program" 2>/dev/null)
    # expect PATTERN TEXT, refuse PATTERN TEXT: prints TEXT if the pattern is missing, or if it is found.
    complain() {
        echo "$program: $1"
        failed=1
    }
    expect() { grep -qE -- "$1" <<<"$facts" || complain "$2"; }
    refuse() { ! grep -qE -- "$1" <<<"$facts" || complain "$2"; }

    expect '\(FLAGS_1\).* PIE' "is not position-independent"
    expect '^ +GNU_RELRO ' "has no read-only relocations"
    expect '\(FLAGS_1\).* NOW|\(BIND_NOW\)' "binds symbols late, so their addresses stay writable"
    expect '^ +GNU_STACK .* RW ' "has an executable stack"
    refuse '^ +LOAD .* RWE ' "has memory that is writable and executable"
    refuse '\((RPATH|RUNPATH)\)' "has a search path for libraries"
    expect ' __stack_chk_fail(@|$)' "has no stack protector"
    expect ' __(v?snprintf|memcpy|memset|memmove|read|fprintf)_chk(@|$)' "has no fortified functions"

    # The linker marks a program for indirect-branch tracking if all its parts are, those of the C library included. Where
    # the C library isn't marked, only our code can be checked: main() starts with the landing instruction, and the start
    # code passes its address as first argument.
    if [[ $(uname -m) == x86_64 ]]; then
        if readelf --notes "$(cc -print-file-name=Scrt1.o)" 2>/dev/null | grep -q IBT; then
            expect 'x86 feature.*IBT, SHSTK' "isn't marked for control-flow protection"
        fi
        entry=$(sed -n 's/ *Entry point address: *0x//p' <<<"$facts")
        main=$(objdump -d --start-address="0x$entry" --stop-address="$((16#$entry + 64))" "$program" |
            sed -nE 's/.*lea .*# ([0-9a-f]+) .*/\1/p' | head -n 1)
        main=${main:-0}
        [[ $(objdump -d --start-address="0x$main" --stop-address="$((16#$main + 4))" "$program") == *endbr64* ]] ||
            complain "has no landing instructions for indirect calls"
    fi
done
exit "$failed"
