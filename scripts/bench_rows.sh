#!/usr/bin/env bash
# Rows per second through the scoring command, with one and with two threads, for every document the
# scoring benchmark times (variants included). Each document's input rows are repeated into a large
# table (BENCH_ROWS rows, default 200000; a twentieth of that for the forests) and scored to /dev/null,
# best of BENCH_RUNS runs (default 3). The time of scoring the header alone (start-up and model load) is
# taken off, so that the rates are those of scoring. Needs an optimised build tree (BUILD_DIR, default
# build/release) with bench_score and vantry-score.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${BUILD_DIR:-build/release}
rows=${BENCH_ROWS:-200000}
runs=${BENCH_RUNS:-3}
score=$build/tools/vantry-score
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$build/bench/bench_score" --write-documents "$work"

# Seconds of the fastest of $runs runs of the command given.
fastest() {
    local best=""
    for _ in $(seq "$runs"); do
        local start end
        start=$(date +%s.%N)
        "$@" >/dev/null
        end=$(date +%s.%N)
        best=$(awk -v s="$start" -v e="$end" -v b="$best" 'BEGIN { t = e - s; print (b == "" || t < b) ? t : b }')
    done
    echo "$best"
}

echo "| document | rows | 1 thread rows/s | 2 threads rows/s | ratio |"
echo "|---|---:|---:|---:|---:|"
for model in "$work"/*.pmml; do
    name=$(basename "$model" .pmml)
    count=$rows
    case $name in *forest* | *RF*) count=$((rows / 20)) ;; esac
    awk -v n="$count" 'NR == 1 { print; next } { row[++k] = $0 } END { for (i = 0; i < n; i++) print row[i % k + 1] }' \
        "$work/$name.input.csv" >"$work/$name.big.csv"
    head -n 1 "$work/$name.input.csv" >"$work/$name.empty.csv"
    t0=$(fastest "$score" -o /dev/null "$model" "$work/$name.empty.csv")
    t1=$(fastest "$score" --threads 1 -o /dev/null "$model" "$work/$name.big.csv")
    t2=$(fastest "$score" --threads 2 -o /dev/null "$model" "$work/$name.big.csv")
    awk -v name="$name" -v n="$count" -v z="$t0" -v a="$t1" -v b="$t2" \
        'BEGIN { a -= z; b -= z
                 if (a <= 0 || b <= 0) { printf "| %s | %d | too noisy | too noisy | |\n", name, n; exit }
                 printf "| %s | %d | %.0f | %.0f | %.2f |\n", name, n, n / a, n / b, a / b }'
    rm -f "$work/$name.big.csv"
done
