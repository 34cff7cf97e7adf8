"""Importing a real ODB++ job against unpacking it: one run, figures as ratios.

    python3 bench/odb_import.py <build bin folder> <job.tgz>

Prints the time of `kpcb extract-odb` on the archive over the time of `tar -xzf`
of the same archive (goal: at most 3), the import's peak memory over the unpacked
size (goal: at most 4), and how long the reference viewer takes from launch to its
hello, which it sends once the converted board is loaded (goal: at most 1 s). Each figure is the best
of three runs; the memory is the child's own peak (getrusage of the child)."""
import os
import resource
import shutil
import subprocess
import sys
import tempfile
import time


def timed_child(args, **kw):
    """Wall time and peak resident bytes of one child process."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss
    start = time.perf_counter()
    subprocess.run(args, check=True, stdout=subprocess.DEVNULL, **kw)
    elapsed = time.perf_counter() - start
    # ru_maxrss of the children is the largest of any child so far, in KiB.
    peak = resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss
    return elapsed, max(peak, before) * 1024


def folder_size(path):
    return sum(os.path.getsize(os.path.join(d, f)) for d, _, files in os.walk(path) for f in files)


def main(bin_dir, job):
    kpcb = os.path.join(bin_dir, "kpcb")
    work = tempfile.mkdtemp(prefix="kpcb-bench-odb-")
    env = dict(os.environ, KPCB_DATA_DIR=os.path.join(work, "data"))
    try:
        unpack, unpacked = [], 0
        for i in range(3):
            target = os.path.join(work, "tar%d" % i)
            os.makedirs(target)
            unpack.append(timed_child(["tar", "-xzf", job, "-C", target])[0])
            unpacked = folder_size(target)
            shutil.rmtree(target)
        # Each import in a child of its own, so that its peak is its own.
        imports, peaks = [], []
        for i in range(3):
            probe = ("import resource, subprocess, sys, time; t = time.perf_counter(); "
                     "subprocess.run(sys.argv[1:], check=True, stdout=subprocess.DEVNULL); "
                     "print(time.perf_counter() - t, resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss)")
            out = subprocess.run([sys.executable, "-c", probe, kpcb, "extract-odb", job, work, "board"],
                                 check=True, capture_output=True, text=True, env=env).stdout.split()
            imports.append(float(out[0]))
            peaks.append(int(out[1]) * 1024)
        board = os.path.join(work, "board.pdbb")
        ready = []
        # The viewer is launched and closed by this process (a viewer can be closed
        # only by the process that launched it), through the Python binding.
        os.environ["KPCB_LIBRARY"] = bin_dir
        os.environ["KPCB_DATA_DIR"] = env["KPCB_DATA_DIR"]
        sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "bindings", "python"))
        import kpcb as binding
        for i in range(3):
            start = time.perf_counter()
            try:
                # The launch returns once the viewer has loaded the board and said hello.
                with binding.Viewer.launch(board) as viewer:
                    ready.append(time.perf_counter() - start)
                    viewer.is_running()
            except binding.KpcbError as error:
                ready.append(None)
                print("  the viewer did not start: %s" % error)
                break
        t_import, t_unpack = min(imports), min(unpack)
        print("odb import of %s" % os.path.basename(job))
        print("  import %.3f s / tar -xzf %.3f s = %.2fx (goal <= 3x)" % (t_import, t_unpack, t_import / t_unpack))
        print("  peak memory %.1f MiB / unpacked %.1f MiB = %.2fx (goal <= 4x)" %
              (min(peaks) / 2**20, unpacked / 2**20, min(peaks) / unpacked))
        if None not in ready:
            print("  viewer ready on the converted board in %.3f s (goal <= 1 s)" % min(ready))
    finally:
        shutil.rmtree(work, ignore_errors=True)


if __name__ == "__main__":
    main(sys.argv[1], sys.argv[2])
