#!/usr/bin/env python3
"""Turns the JSON of a scripts/bench.sh run into the table of docs/performance.md.

Every figure is the median of the run's repetitions; every target is a ratio to a
baseline measured in the same run with the same CPU pinning."""
import json
import os
import sys

UNIT = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}


def load(folder, name):
    path = os.path.join(folder, name + ".json")
    if not os.path.exists(path):
        return None
    with open(path) as f:
        return json.load(f)


def entry(run, prefix):
    """The median of a benchmark (or its single run) whose name starts with prefix."""
    if not run:
        return None
    single = None
    for b in run["benchmarks"]:
        name = b.get("run_name", b["name"])
        if name != prefix and not name.startswith(prefix + "/"):
            continue
        if b.get("error_occurred"):
            return {"error": b.get("error_message", "failed")}
        if b.get("run_type") == "aggregate":
            if b.get("aggregate_name") == "median":
                return b
        elif single is None:
            single = b
    return single


def seconds(b):
    return b["real_time"] * UNIT[b["time_unit"]] if b and "real_time" in b else None


def fmt(value, digits=2):
    if value is None:
        return "n/a"
    if abs(value) >= 100:
        return f"{value:,.0f}"
    return f"{value:.{digits}f}"


def verdict(value, target, lower_is_better):
    if value is None:
        return "n/a"
    holds = value <= target if lower_is_better else value >= target
    return "holds" if holds else "misses"


def ratio(a, b):
    return a / b if a is not None and b else None


def transport_rows(run):
    raw = seconds(entry(run, "BM_RawRoundTrip"))
    zmq = seconds(entry(run, "BM_ZmqRoundTrip"))
    query = seconds(entry(run, "BM_QueryRoundTrip/0"))
    kept_query = seconds(entry(run, "BM_QueryRoundTrip/1"))
    raw_rate = (entry(run, "BM_RawSendRate") or {}).get("items_per_second")
    oneway = (entry(run, "BM_OneWayRate/0") or {}).get("items_per_second")
    kept_oneway = (entry(run, "BM_OneWayRate/1") or {}).get("items_per_second")
    answer = entry(run, "BM_LargeAnswer")
    copy = entry(run, "BM_Memcpy")
    answer_bps = (answer or {}).get("bytes_per_second")
    copy_bps = (copy or {}).get("bytes_per_second")
    us = lambda s: s * 1e6 if s is not None else None
    k = lambda r: r / 1e3 if r is not None else None
    gb = lambda r: r / 1e9 if r is not None else None
    return {
        "raw": us(raw), "zmq": us(zmq), "query": us(query),
        "query/raw": ratio(query, raw), "query/zmq": ratio(query, zmq),
        "kept_query": us(kept_query), "kept_query/raw": ratio(kept_query, raw),
        "kept_query/zmq": ratio(kept_query, zmq),
        "raw_rate": k(raw_rate), "oneway": k(oneway), "oneway/raw": ratio(oneway, raw_rate),
        "kept_oneway": k(kept_oneway), "kept_oneway/raw": ratio(kept_oneway, raw_rate),
        "answer_ms": seconds(answer) * 1e3 if seconds(answer) else None,
        "answer_gbps": gb(answer_bps), "copy_gbps": gb(copy_bps),
        "answer/copy": ratio(copy_bps, answer_bps),
    }


def main(folder):
    one = load(folder, "one-cpu")
    two = load(folder, "two-cpus")
    columns = [("one CPU", transport_rows(one) if one else None), ("two CPUs", transport_rows(two) if two else None)]
    columns = [(n, c) for n, c in columns if c]
    pinning = " / ".join(r["context"].get("pinning", "?") for r in (one, two) if r)

    lines = ["Pinning: " + pinning, ""]
    head = "| Measure | " + " | ".join(n for n, _ in columns) + " | Target |"
    lines += [head, "|---" * (len(columns) + 2) + "|"]

    def row(label, key, target="", digits=2, check=None):
        cells = []
        for _, c in columns:
            text = fmt(c[key], digits)
            if check:
                text += " (" + verdict(c[key], *check) + ")"
            cells.append(text)
        lines.append(f"| {label} | " + " | ".join(cells) + f" | {target} |")

    row("raw AF_UNIX round trip, 64 B (µs) — baseline", "raw")
    row("ZeroMQ REQ/REP ipc:// round trip (µs) — baseline", "zmq")
    row("KPCB_GetPinPitch round trip (µs)", "query")
    row("query / raw round trip", "query/raw", "≤ 1.5", check=(1.5, True))
    row("query / ZeroMQ round trip", "query/zmq", "< 1", check=(1.0, True))
    row("the same with connections kept (µs)", "kept_query")
    row("kept query / raw round trip", "kept_query/raw", "≤ 1.5", check=(1.5, True))
    row("kept query / ZeroMQ round trip", "kept_query/zmq", "< 1", check=(1.0, True))
    row("raw 64 B datagram send rate (k/s) — baseline", "raw_rate")
    row("one-way commands into the viewer (k/s), all arriving", "oneway")
    row("one-way / raw send rate", "oneway/raw", "≥ 0.5", check=(0.5, False))
    row("the same with connections kept (k/s)", "kept_oneway")
    row("kept one-way / raw send rate", "kept_oneway/raw", "≥ 0.5", check=(0.5, False))
    row("1,000,000-point KPCB_GetCWPolygonPointDataArray (ms)", "answer_ms")
    row("  effective GB/s (16 MB of coordinates)", "answer_gbps", "≥ 1", check=(1.0, False))
    row("memcpy of the same 16 MB (GB/s) — baseline", "copy_gbps")
    row("answer time / memcpy time", "answer/copy")

    heavy = load(folder, "launch-merge")
    load_run = load(folder, "board-load")
    arrivals = entry(load(folder, "arrivals"), "BM_OneWayArrivals")
    memory = entry(load(folder, "memory"), "BM_CallerMemory")
    lines += ["", "| Measure | Value | Ratio | Target |", "|---|---|---|---|"]

    launch_small = seconds(entry(heavy, "BM_LaunchToReady/0"))
    launch_big = seconds(entry(heavy, "BM_LaunchToReady/10000"))
    read10k = seconds(entry(load_run, "BM_ReadFileBytes/10000"))
    load10k = seconds(entry(load_run, "BM_LoadPdbb/10000"))
    ms = lambda s: s * 1e3 if s is not None else None
    lines.append(f"| launch to ready, sample board of 20 components (ms) — baseline | {fmt(ms(launch_small))} | 1 | |")
    lines.append(f"| launch to ready, 10,000 components (ms) | {fmt(ms(launch_big))} | "
                 f"{fmt(ratio(launch_big, launch_small))} x sample launch | |")
    lines.append(f"| board load in process, 10,000 components .pdbb (ms) | {fmt(ms(load10k))} | "
                 f"{fmt(ratio(load10k, read10k))} x reading the file's bytes | |")
    lines.append(f"| launch to ready minus board load (ms) | "
                 f"{fmt(ms(launch_big - load10k) if launch_big and load10k else None)} | "
                 f"{fmt(ratio(launch_big, load10k))} x board load | |")
    first = None
    for shapes in (1000, 10000, 100000):
        b = entry(heavy, f"BM_MergeRun/{shapes}")
        t = seconds(b)
        if first is None:
            first = t
        detail = ""
        if b and "shapes" in b:
            detail = f" ({int(b['shapes']):,} shapes, {int(b.get('holes', 0)):,} holes)"
        if b and "error" in b:
            detail = f" ({b['error']})"
        lines.append(f"| polygon merge, net of {shapes:,} shapes (ms){detail} | {fmt(ms(t))} | "
                     f"{fmt(ratio(t, first))} x the 1,000-shape net | |")
    merge_run = load(folder, "merge-in-process")
    times = {n: seconds(entry(merge_run, f"BM_CopperMerge/{n}")) for n in (1000, 10000, 100000)}
    for n, t in times.items():
        lines.append(f"| copper merge in process, net of {n:,} shapes (ms) | {fmt(ms(t))} | | |")
    growth = ratio(times[100000], times[10000])
    lines.append(f"| growth of the in-process merge, 100,000 / 10,000 shapes | {fmt(growth)} | | "
                 f"≤ 12 ({verdict(growth, 12, True)}) |")
    lines.append(f"| in-process merge of 100,000 shapes (s) | {fmt(times[100000])} | | "
                 f"< 1.5 ({verdict(times[100000], 1.5, True)}) |")
    real = load(folder, "real-board")
    if real:
        net = entry(real, "BM_RealBoardLargestNet")
        board_load = seconds(entry(real, "BM_RealBoardLoad"))
        launch = seconds(entry(load(folder, "real-board-launch"), "BM_LaunchRealBoard"))
        label = f" ({net.get('label', '')}: {int(net.get('shapes', 0)):,} shapes, {int(net.get('outlines', 0)):,} " \
                f"outlines, {int(net.get('holes', 0)):,} holes)" if net and "shapes" in net else ""
        t = seconds(net)
        lines.append(f"| real board: merge of its largest net (s){label} | {fmt(t, 3)} | | "
                     f"< 0.5 ({verdict(t, 0.5, True)}) |")
        lines.append(f"| real board: load in process (ms) — baseline | {fmt(ms(board_load))} | 1 | |")
        lines.append(f"| real board: launch to ready (ms) | {fmt(ms(launch))} | {fmt(ratio(launch, board_load))} x "
                     f"its load | ≤ 5 ({verdict(ratio(launch, board_load), 5, True)}) |")
    if arrivals and "arrived" in arrivals:
        lines.append(f"| one-way commands counted in the viewer's journal | {int(arrivals['arrived']):,} of "
                     f"{int(arrivals['sent']):,} | {fmt(ratio(arrivals['arrived'], arrivals['sent']), 3)} | all arrive "
                     f"({verdict(arrivals['arrived'], arrivals['sent'], False)}) |")
    if memory and "rss_kB_1k" in memory:
        calls = int(memory["calls"])
        rss_ok = memory["rss_kB_all"] <= memory["rss_kB_1k"]
        fd_ok = memory["fds_all"] == memory["fds_1k"]
        lines.append(f"| caller resident size after 1,000 / {calls:,} calls (KiB) | {memory['rss_kB_1k']:,.0f} / "
                     f"{memory['rss_kB_all']:,.0f} | {fmt(ratio(memory['rss_kB_all'], memory['rss_kB_1k']), 3)} | "
                     f"equal ({'holds' if rss_ok else 'misses'}) |")
        lines.append(f"| caller open descriptors after 1,000 / {calls:,} calls | {memory['fds_1k']:.0f} / "
                     f"{memory['fds_all']:.0f} | | equal ({'holds' if fd_ok else 'misses'}) |")
    print("\n".join(lines))


if __name__ == "__main__":
    main(sys.argv[1] if len(sys.argv) > 1 else ".")
