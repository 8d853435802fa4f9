#!/usr/bin/python3
"""Makes the table and the picture of scripts/speed.sh from the figures in a directory."""

import json
import pathlib
import sys

NANOSECONDS = 1e9


def read_medians(path):
    """Median time per pixel in ns by benchmark name; counters of benchmarks that have no such time."""
    medians = {}
    for run in json.loads(path.read_text())["benchmarks"]:
        if run.get("run_type") == "aggregate" and run["aggregate_name"] != "median":
            continue
        name = run["run_name"].replace("/real_time", "")
        medians[name] = run["per_pixel"] * NANOSECONDS if "per_pixel" in run else run
    return medians


class Figures:
    def __init__(self, directory):
        self.one = read_medians(directory / "speed-one.json")
        self.two = read_medians(directory / "speed-two.json")
        self.memory = read_medians(directory / "speed-memory.json")
        frames = [n.split("/") for n in self.one if n.startswith("frame/in_place/")]
        self.scenes = sorted({f[4] for f in frames}, key=lambda scene: scene != "skin")
        targets = {f[2] for f in frames if not f[2].startswith("composition")}
        self.targets = sorted(targets, key=lambda target: self.frame("1920x1080", target))
        self.best = self.targets[0]

    def frame(self, size, target=None, scene="skin", threads=4, radius=20, of=None):
        return (of or self.one)[
            f"frame/in_place/{target or self.best}/{size}/{scene}/threads:{threads}/radius:{radius}"]

    def composition(self, size, threads, scene="skin", variant="composition", of=None):
        return (of or self.one).get(f"frame/in_place/{variant}/{size}/{scene}/threads:{threads}")


def times(peer, ours):
    return None if peer is None or ours is None else peer / ours


def faster(value):
    return "not measured" if value is None else f"{value:.2f}x"


def rows(f):
    """Figure, result, must, aim."""
    for scene in f.scenes:
        on = "" if scene == "skin" else f", {scene} scene"
        for size, must, aim in (("1920x1080", "2.0x", "3x"), ("3840x2160", "3.0x", "4x")):
            ours = f.frame(size, scene=scene)
            peer = f.composition(size, 1, scene)
            strips = f.composition(size, 1, scene, "composition_strips")
            result = f"{faster(times(peer, ours))} (its box sums in strips of 192 rows: {faster(times(strips, ours))})"
            yield f"frame in place {size}, one core, against the composition{on}", result, must, aim
        for size in ("1920x1080", "3840x2160"):
            ours = f.frame(size, scene=scene, of=f.two)
            peer = f.composition(size, 2, scene, of=f.two)
            strips = f.composition(size, 2, scene, "composition_strips", f.two)
            result = f"{faster(times(peer, ours))} (strips: {faster(times(strips, ours))})"
            yield f"the same on two cores, {size}{on}", result, "1.8x", "2.5x"
    hd = f.frame("1920x1080")
    new, same = f.one["copy/new/memcpy/1920x1080"], f.one["copy/same/memcpy/1920x1080"]
    yield ("frame in place 1920x1080, as a multiple of copying its RGBA bytes once",
           f"{hd / new:.1f} (a copy that stays in the last-level cache: {hd / same:.1f})", "<= 6.5", "<= 4.5")
    smoothing = f.one[f"smoothing/band/{f.best}/1920x1080/radius:20"]
    boxes = f.one.get("box_sums/float_squares/opencv/1920x1080/half:23")
    yield "smoothing against OpenCV's two box sums", faster(times(boxes, smoothing)), "2.2x", "3x"
    for unit, label, musts in (("to_rgba", "NV21 to RGBA", ("0.9x", "1.0x")), ("to_nv21", "RGBA to NV21", ("0.85x", "0.95x"))):
        for extent, must, aim in (("plane", musts[0], "1.0x"), ("rows", musts[1], "1.2x")):
            ours = f.one[f"{unit}/{extent}/{f.best}/1920x1080"]
            peer = f.one.get(f"{unit}/{extent}/libyuv/1920x1080")
            place = "whole plane" if extent == "plane" else "eight rows in the cache"
            yield f"{label} against libyuv, {place}", faster(times(peer, ours)), must, aim
    yield ("radius 60 against radius 8 (time)",
           f"{f.frame('1920x1080', radius=60) / f.frame('1920x1080', radius=8):.2f}", "<= 1.2", "<= 1.1")
    yield ("time per pixel at 3840x2160 against 1280x720",
           f"{f.frame('3840x2160') / f.frame('1280x720'):.2f}", "<= 1.25", "<= 1.1")
    if "sse2" in f.targets and f.best == "avx2":
        yield ("x86-64 baseline against AVX2 (time)", f"{f.frame('1920x1080', 'sse2') / hd:.2f}", "<= 1.8", "<= 1.5")
    memory = f.memory[f"frame/memory/{f.best}/1920x1080/skin/threads:4/radius:20/iterations:1"]
    yield ("heap allocations in a steady frame; growth over 1,000 frames",
           f"{memory['allocations_per_frame']:g}; {memory['growth_bytes']:g} bytes", "0; 0", "")
    first = f.one[f"frame/first/{f.best}/1920x1080/skin/threads:4/radius:20"]
    yield "first result of a new filter, in steady frames", f"{first / hd:.2f}", "<= 3", ""


def write_table(f, path):
    lines = ["| figure | measured | must | aim |", "|---|---|---|---|"]
    lines += ["| " + " | ".join(row) + " |" for row in rows(f)]
    lines += ["", "Time of a frame in place, one core, ns per pixel:", "",
              "| target | 1280x720 | 1920x1080 | 3840x2160 |", "|---|---|---|---|"]
    for target in f.targets:
        values = [f"{f.frame(size, target):.2f}" for size in ("1280x720", "1920x1080", "3840x2160")]
        lines.append(f"| {target} | " + " | ".join(values) + " |")
    path.write_text("\n".join(lines) + "\n")
    print(path.read_text())


def stages(f):
    size = "1920x1080"
    parts = [("smoothing", f.one[f"smoothing/band/{f.best}/{size}/radius:20"]),
             ("skin blend", f.one[f"blend/plane/{f.best}/{size}"]),
             ("to RGBA", f.one[f"to_rgba/rows/{f.best}/{size}"]),
             ("colour table", f.one[f"color_table/rows/{f.best}/{size}"]),
             ("to NV21", f.one[f"to_nv21/rows/{f.best}/{size}"])]
    rest = f.frame(size) - sum(time for _, time in parts)
    return parts + [("threads, memory", max(rest, 0))]


def draw(f, path):
    import matplotlib
    matplotlib.use("Agg")
    import matplotlib.pyplot as plot

    figure, (by_radius, by_area, stacked) = plot.subplots(1, 3, figsize=(13, 4))
    radii = (8, 20, 40, 60, 100)
    by_radius.plot(radii, [f.frame("1920x1080", radius=r) * 1.92 * 1.08 for r in radii], marker="o")
    by_radius.set(title="radius, 1920x1080", xlabel="radius, pixels", ylabel="ms per frame, one core", ylim=(0, None))

    sizes = ("1280x720", "1920x1080", "3840x2160")
    area = [int(s.split("x")[0]) * int(s.split("x")[1]) / 1e6 for s in sizes]
    for target in f.targets:
        if target != "scalar":
            by_area.plot(area, [f.frame(s, target) * a for s, a in zip(sizes, area)], marker="o", label=target)
    peers = [f.composition(s, 1) for s in sizes]
    if None not in peers:
        by_area.plot(area, [p * a for p, a in zip(peers, area)], marker="s", label="libyuv + OpenCV")
    by_area.set(title="frame size, radius 20", xlabel="megapixels", ylim=(0, None))
    by_area.legend()

    bottom = 0
    for name, time in stages(f):
        stacked.bar([f.best], [time], bottom=bottom, width=0.5, label=name)
        bottom += time
    stacked.set(title="steps of a frame, 1920x1080", ylabel="ns per pixel", xlim=(-0.5, 1.6))
    stacked.legend(loc="right")
    for axes in (by_radius, by_area, stacked):
        axes.grid(axis="y", alpha=0.3)
    figure.tight_layout()
    figure.savefig(path, dpi=80)


def main():
    directory = pathlib.Path(sys.argv[1])
    figures = Figures(directory)
    write_table(figures, directory / "speed.md")
    draw(figures, directory / "speed.png")


main()
