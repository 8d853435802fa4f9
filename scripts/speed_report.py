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
    """Figure, result, must, aim. Every figure against the composition is followed by the one against its faster form."""
    forms = (("composition", "the composition", True),
             ("composition_strips", "the composition with box sums in strips of 192 rows", False))
    for figures, threads, cores, limits in (
            (f.one, 1, "one core", {"1920x1080": ("2.0x", "3x"), "3840x2160": ("3.0x", "4x")}),
            (f.two, 2, "two cores", {"1920x1080": ("1.8x", "2.5x"), "3840x2160": ("1.8x", "2.5x")})):
        for size, (must, aim) in limits.items():
            for scene in f.scenes:
                for variant, label, limited in forms:
                    ours = f.frame(size, scene=scene, of=figures)
                    peer = f.composition(size, threads, scene, variant, figures)
                    yield (f"frame in place {size}, {cores}, {scene} scene, against {label}", faster(times(peer, ours)),
                           must if limited else "", aim if limited else "")
    hd = f.frame("1920x1080")
    for variant, label, must, aim in (("new", "from and to memory, as a camera delivers them", "<= 6.5", "<= 4.5"),
                                      ("same", "inside the last-level cache", "", "")):
        yield (f"frame in place 1920x1080, as a multiple of copying its RGBA bytes once, {label}",
               f"{hd / f.one[f'copy/{variant}/memcpy/1920x1080']:.1f}", must, aim)
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
           f"{memory['allocations_per_frame']:g}; heap {memory['heap_growth']:g}, "
           f"process {memory['resident_growth']:g} bytes", "0; 0", "")
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
    return parts + [("threads, memory", rest)]


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
