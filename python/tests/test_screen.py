"""Scoring libraries: on a local Dask cluster the rows of varimo-krige --load,
bit for bit, every row accounted for when a worker dies mid-run; the program
itself streaming its query file in flat memory."""

import gzip
import json
import os
import signal
import subprocess
import sys
import threading
import time

import pytest

import varimo
from conftest import BZR, krige_program, run_krige

FIRST_5K = "/usr/share/RDKit/Data/NCI/first_5K.smi"


@pytest.fixture(scope="module")
def chembl_model(chembl, tmp_path_factory):
    path = tmp_path_factory.mktemp("model") / "chembl.vkm"
    varimo.MolKriging().fit(chembl["smiles"], chembl["y"]).save(path)
    return path


@pytest.fixture(scope="module")
def cluster():
    from dask.distributed import LocalCluster

    with LocalCluster(n_workers=2, threads_per_worker=1, processes=True, dashboard_address=":0") as local:
        yield local


def rows_of(out_dir, manifest):
    """The data lines of the partitions' outputs, in partition order."""
    lines = []
    for part in manifest["partitions"]:
        with open(os.path.join(out_dir, part["output"])) as f:
            lines += f.read().splitlines()[1:]
    return lines


def test_a_local_cluster_scores_first_5k_as_the_program_does(chembl_model, cluster, tmp_path):
    expected = tmp_path / "single.csv"
    run_krige("--load", chembl_model, "--predict", FIRST_5K, "--out", expected, "--threshold", "6.5")
    manifest = varimo.screen(chembl_model, [FIRST_5K], tmp_path / "out", scheduler=cluster.scheduler_address,
                             chunk_size=1200, threshold="6.5", progress=False)
    single = open(expected).read().splitlines()
    assert rows_of(tmp_path / "out", manifest) == single[1:]
    assert open(tmp_path / "out" / manifest["partitions"][0]["output"]).readline().rstrip("\n") == single[0]
    assert manifest["rows"] == len(single) - 1 == 4999
    assert [p["first_row"] for p in manifest["partitions"]] == [0, 1200, 2400, 3600, 4800]
    assert manifest["failed"] == len(manifest["failures"]) == sum(",1.7976931348623157e+308," in l for l in single)
    assert manifest["model_checksum"] == open(chembl_model).read().splitlines()[-1].split()[1]
    assert json.load(open(tmp_path / "out" / "manifest.json")) == manifest


def test_sd_and_compressed_inputs_split_at_their_records(chembl_model, cluster, tmp_path):
    # bzr.sdf with one record missing its "$$$$": the partitions must number
    # the two records it holds as the reader does.
    records = open(BZR).read().split("$$$$\n")
    damaged = "$$$$\n".join(records[:40]) + records[40] + "$$$$\n".join(records[41:])
    sdf = tmp_path / "damaged.sdf"
    sdf.write_text(damaged)
    smi_gz = tmp_path / "first_2k.smi.gz"
    with gzip.open(smi_gz, "wt") as out:
        out.write("smiles name\n" + "".join(open(FIRST_5K).readlines()[:2000]))
    for path in (sdf, smi_gz):
        expected = tmp_path / "single.csv"
        run_krige("--load", chembl_model, "--predict", path, "--out", expected)
        out = tmp_path / ("out-" + path.name)
        manifest = varimo.screen(chembl_model, path, out, scheduler=cluster.scheduler_address, chunk_size=37,
                                 progress=False)
        assert rows_of(out, manifest) == open(expected).read().splitlines()[1:], path


def test_a_worker_killed_mid_run_loses_no_row(chembl_model, tmp_path):
    from dask.distributed import Client, LocalCluster

    out = tmp_path / "out"
    with LocalCluster(n_workers=2, threads_per_worker=1, processes=True, dashboard_address=":0") as local:
        with Client(local) as client:
            pids = list(client.run(os.getpid).values())

        def kill_when_started():
            # Once the first partitions are written, one worker dies.
            for _ in range(600):
                if out.exists() and len(list(out.glob("*.csv"))) >= 1:
                    break
                time.sleep(0.05)
            os.kill(pids[0], signal.SIGKILL)

        killer = threading.Thread(target=kill_when_started)
        killer.start()
        manifest = varimo.screen(chembl_model, [FIRST_5K], out, scheduler=local.scheduler_address, chunk_size=250,
                                 progress=False)
        killer.join()
    assert manifest["failed_partitions"] == []
    assert manifest["rows"] == 4999
    rows = [int(line.split(",", 1)[0]) for line in rows_of(out, manifest)]
    assert rows == list(range(4999))


def test_the_command_runs_a_local_cluster_and_names_its_failures(chembl_model, tmp_path):
    query = tmp_path / "q.smi"
    query.write_text("CCO ethanol\nC1CC( broken\nc1ccccc1 benzene\n")
    done = subprocess.run([sys.executable, "-m", "varimo.screen", "--model", str(chembl_model), "--out",
                           str(tmp_path / "out"), "--workers", "1", str(query)], capture_output=True, text=True)
    assert done.returncode == 0, done.stderr
    assert "row 1 (broken): cannot parse SMILES 'C1CC('" in done.stderr
    assert "3 rows in 1 partitions, 1 could not be predicted" in done.stderr
    done = subprocess.run([sys.executable, "-m", "varimo.screen", "--model", str(tmp_path / "none.vkm"), "--out",
                           str(tmp_path / "out"), str(query)], capture_output=True, text=True)
    assert done.returncode == 2 and "no such file" in done.stderr


def peak_rss_kib(args):
    """The peak resident memory of varimo-krige with the arguments, measured
    by a process of its own."""
    probe = ("import resource, subprocess, sys; subprocess.run(sys.argv[1:], check=True, "
             "stdout=subprocess.DEVNULL); print(resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss)")
    done = subprocess.run([sys.executable, "-c", probe, krige_program(), *map(str, args)], capture_output=True,
                          text=True, check=True)
    return int(done.stdout)


def test_the_program_predicts_a_large_file_in_flat_memory(tmp_path):
    # A small model keeps the test short: memory is what is measured.
    train = tmp_path / "train.smi"
    lines = open(FIRST_5K).readlines()
    train.write_text("smiles name logp\n" + "".join(
        f"{l.split()[0]} t{i} {len(l.split()[0]) % 7}\n" for i, l in enumerate(lines[:80])))
    model = tmp_path / "m.vkm"
    run_krige("--train", train, "--response", "logp", "--save", model)
    small, large = tmp_path / "small.smi", tmp_path / "large.smi"
    small.write_text("".join(lines))
    large.write_text("".join(lines) * 4)
    sizes = [peak_rss_kib(["--load", model, "--predict", q, "--out", tmp_path / "p.csv", "--quiet"])
             for q in (small, large)]
    assert sizes[1] <= 1.1 * sizes[0], sizes
    assert sum(1 for _ in open(tmp_path / "p.csv")) == 4 * 4999 + 1
