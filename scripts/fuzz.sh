#!/usr/bin/env bash
# Builds the libFuzzer targets of tests/fuzz with clang in build/fuzz, then runs each for its share of
# the seconds given (default 600). Prints each target's executions and coverage; an input that crashed,
# leaked, ran out of time or memory is copied to tests/fuzz/regressions/<target>/ and makes the script
# exit non-zero.
set -euo pipefail
cd "$(dirname "$0")/.."
# What fuzzing needs beyond the ordinary build: clang and its libFuzzer runtime.
scripts/setup.sh clang-14 libclang-rt-14-dev

seconds=${1:-600}
build=${FUZZ_BUILD_DIR:-build/fuzz}
jobs=${JOBS:-2}
targets=(document data_dictionary transformations legacy values text)
# Targets that read XML get the dictionary of document tokens.
xml_targets=" document data_dictionary transformations legacy "

CC=clang CXX=clang++ cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVANTRY_FUZZ=ON >/dev/null
cmake --build "$build" -j "$jobs" --target fuzz_all

# Seed corpora, assembled in a scratch folder: the test documents for the readers, a few texts for the
# value and text targets, and every kept regression input of the target. What a run adds stays there,
# so that the next run starts where this one ended (remove the folder to start from the first inputs alone).
corpus="$build/corpus"
rm -rf "$build/artifacts"
documents=$(find tests/fixtures tests/conformance/cases -type f \( -name '*.xml' -o -name '*.pmml' \))
for target in "${targets[@]}"; do
    mkdir -p "$corpus/$target" "$build/artifacts/$target"
    if [[ "$xml_targets" == *" $target "* ]]; then
        for f in $documents; do cp "$f" "$corpus/$target/$(echo "$f" | tr / _)"; done
    fi
    if [ -d "tests/fuzz/regressions/$target" ]; then
        cp tests/fuzz/regressions/"$target"/* "$corpus/$target/" 2>/dev/null || true
    fi
done
# values: a type byte (its low four bits: 1 date, 2 time, 3 date-time, 4 to 12 numbers on other scales) and a text.
count=0
for text in $'\x01''2020-02-29' $'\x02''23:59:59' $'\x03''1999-12-31T12:30:00' $'\x05''-1234.5e3' \
    $'\x0c''0.000001' $'\x20''1 2 "a b" "c\"d" ""' $'\x10''x "y\" z' $'\x01''-0001-01-01'; do
    printf '%s' "$text" >"$corpus/values/input$((count++))"
done
# text: a code-page byte (UTF-8, Latin-1, CP1252, Shift_JIS, GB18030, UTF-16LE, EUC-KR, Big5; the high
# bits pick a target size) and a text.
for text in $'\x50Gr\xc3\xbc\xc3\x9fe, \xe6\x97\xa5\xe6\x9c\xac' $'\x41caf\xe9 na\xefve' $'\x63\x82\xa0\x82\xa2' \
    $'\x85\x3d\xd8\x01\xde' $'\x20abc'; do
    printf '%s' "$text" >"$corpus/text/input$((count++))"
done

export LD_LIBRARY_PATH="$PWD/$build/lib"
export ASAN_OPTIONS="detect_leaks=1:strict_string_checks=1"
export LSAN_OPTIONS="suppressions=$PWD/tests/lsan.supp:print_suppressions=0"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
share=$((seconds / ${#targets[@]}))
[ "$share" -lt 1 ] && share=1
findings=0
summary=()
for target in "${targets[@]}"; do
    log="$build/fuzz-$target.log"
    dict=()
    [[ "$xml_targets" == *" $target "* ]] && dict=(-dict=tests/fuzz/pmml.dict)
    echo "== fuzz_$target for ${share}s"
    status=0
    # Inputs up to 64 KiB, 10 s each; 2 GiB of memory in all and no single allocation above 512 MiB,
    # so that exhaustion shows as a finding rather than as a stalled machine.
    "$build/fuzz/fuzz_$target" "${dict[@]}" -max_total_time="$share" -max_len=65536 -timeout=10 \
        -rss_limit_mb=2048 -malloc_limit_mb=512 -print_final_stats=1 \
        -artifact_prefix="$build/artifacts/$target/" "$corpus/$target" >"$log" 2>&1 || status=$?
    execs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
    last=$(grep -E '^#[0-9]+' "$log" | tail -1 || true)
    cov=$(echo "$last" | sed -n 's/.*cov: \([0-9]*\).*/\1/p')
    ft=$(echo "$last" | sed -n 's/.*ft: \([0-9]*\).*/\1/p')
    line="$target: ${execs:-?} executions, cov ${cov:-?}, ft ${ft:-?}"
    # Each artifact is kept under a readable name: what went wrong and the start of its hash.
    for artifact in "$build/artifacts/$target"/*; do
        [ -e "$artifact" ] || continue
        name=$(basename "$artifact")
        kind=${name%%-*}
        mkdir -p "tests/fuzz/regressions/$target"
        kept="tests/fuzz/regressions/$target/$kind-${name#*-}"
        kept="${kept:0:$((${#kept} - 32))}"
        ext=txt
        [[ "$xml_targets" == *" $target "* ]] && ext=xml
        cp "$artifact" "$kept.$ext"
        line="$line; FINDING $kind kept as $kept.$ext (log $log)"
        findings=$((findings + 1))
    done
    if [ "$status" -ne 0 ] && [ -z "$(ls -A "$build/artifacts/$target")" ]; then
        line="$line; FAILED with status $status without an input (log $log)"
        findings=$((findings + 1))
    fi
    summary+=("$line")
    echo "$line"
done

echo "== summary (${share}s per target)"
printf '%s\n' "${summary[@]}"
[ "$findings" -eq 0 ]
