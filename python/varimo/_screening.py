"""Scoring large molecule libraries with a saved model on a Dask cluster.

    manifest = varimo.screen("model.vkm", ["vendor.smi.gz"], "scores/")

    python3 -m varimo.screen --model model.vkm --out scores/ [--scheduler ADDRESS] [--workers N] FILES...

Each input is cut into partitions of `chunk_size` records at record
boundaries (SD records at their "$$$$" lines; SMILES and CSV files at line
ends, their header carried along), numbered on from one partition to the
next, so that a row keeps the number it has in the input. Each worker
process loads the model file once and predicts its partitions with the
library's screening call, writing one output file per partition (the rows
of varimo-krige --load MODEL --predict FILE --out OUT, bit for bit, each
file with its header line) and nothing else. A partition that fails, its
worker killed or its text damaged, is tried again by Dask; one that fails
every time is listed in the manifest with the rows it held. So every input
row is in an output file or in the manifest, never silently missing.

Without a scheduler address, a local cluster of worker processes (one
thread each) is started for the run. Plain files are read by the workers
from the byte ranges of their partitions (the workers must see the same
files, as on one machine or a shared file system); compressed files are
read by the client and their partitions' text sent to the workers.
"""

import argparse
import collections
import gzip
import json
import os
import sys

from . import _core

DEFAULT_CHUNK_SIZE = 20000

Partition = collections.namedtuple(
    "Partition", "input input_index index format first_number header start end text output")

_MODELS = {}


def _file_format(path):
    """As the library reads files: by their extension, in any case."""
    lower = path.lower()
    if lower.endswith((".sdf", ".sdf.gz", ".sd", ".sd.gz")):
        return "sd"
    if lower.endswith((".csv", ".csv.gz")):
        return "csv"
    return "smiles"


def _smiles_columns(line):
    return [c for c in line.replace("\t", " ").replace(",", " ").split(" ") if c]


class _Records:
    """Counts the records of a file's lines as the library's readers do,
    and says where each record ends."""

    def __init__(self, file_format):
        self.format = file_format
        self.header = ""
        self.first = True
        self.block_blank = True
        self.block_molecules = 0

    def _end_block(self):
        # An SD record that runs into the next molecule counts as one record
        # per molecule it holds, as the reader names each.
        records = 0 if self.block_blank else max(1, self.block_molecules)
        self.block_blank, self.block_molecules = True, 0
        return records

    def records_ended(self, line):
        """How many records `line` (bytes, line end included) ends; keeps the
        header line of a SMILES or CSV file aside."""
        text = line.decode("utf-8", "surrogateescape").rstrip("\r\n")
        if self.first and text.startswith("\ufeff"):
            text = text[1:]
        if self.format == "sd":
            self.first = False
            if text.startswith("$$$$"):
                return self._end_block()
            if text.strip(" \t"):
                self.block_blank = False
            if text.startswith("M  END"):
                self.block_molecules += 1
            return 0
        if self.format == "csv":
            if self.first:
                self.first = False
                self.header = text
                return 0
            return 1 if text.strip(" \t") else 0
        columns = _smiles_columns(text)
        if not columns or columns[0].startswith("#"):
            return 0
        if self.first and columns[0].lower() == "smiles":
            self.first = False
            self.header = text
            return 0
        self.first = False
        return 1

    def records_left(self):
        """The records of the lines since the last record end: an SD record
        without its "$$$$"."""
        return self._end_block() if self.format == "sd" else 0


def _open(path):
    return gzip.open(path, "rb") if path.lower().endswith(".gz") else open(path, "rb")


def partitions(path, input_index, chunk_size, out_dir, out_suffix=".csv"):
    """The partitions of one input file, in order."""
    file_format = _file_format(path)
    compressed = path.lower().endswith(".gz")
    records = _Records(file_format)
    stem = os.path.basename(path).split(".")[0] or "input"
    found = []
    first_number, count, start, offset = 1, 0, 0, 0
    text = []

    def close(end):
        index = len(found)
        output = os.path.join(out_dir, f"{input_index:03d}-{stem}-{index:06d}{out_suffix}")
        header = records.header if index > 0 else ""
        found.append(Partition(path, input_index, index, file_format, first_number, header, start, end,
                               b"".join(text) if compressed else None, output))

    with _open(path) as f:
        for line in f:
            offset += len(line)
            if compressed:
                text.append(line)
            count += records.records_ended(line)
            if count >= chunk_size:
                close(offset)
                first_number += count
                count, start, text = 0, offset, []
        count += records.records_left()
        if count > 0 or not found:
            close(offset)
    return found


def _model(model_path, checksum):
    """The model of the file, loaded once per worker process."""
    key = (model_path, checksum)
    if key not in _MODELS:
        with open(model_path, "rb") as f:
            text = f.read()
        if _core.model_checksum(text) != checksum:
            raise RuntimeError(f"{model_path} changed during the run")
        _MODELS[key] = _core.MolModel.from_text(text, model_path)
    return _MODELS[key]


def score_partition(model_path, checksum, part, threshold=None, fallback_kernels=False, threads=1):
    """Scores one partition into its output file; returns its counts and
    failures. Safe to run again: the output is replaced whole. The
    threshold (a number, or its text as typed) adds the column P(>T)."""
    text = part.text
    if text is None:
        with open(part.input, "rb") as f:
            f.seek(part.start)
            text = f.read(part.end - part.start)
    result = _core.screen_text(
        _model(model_path, checksum), text.decode("utf-8", "surrogateescape"), part.format, part.first_number,
        part.header, part.output, header=True, threshold=None if threshold is None else float(threshold),
        threshold_text="" if threshold is None else (threshold if isinstance(threshold, str) else repr(threshold)),
        threads=threads,
        fallback_kernels=fallback_kernels)
    _core.drain_messages()
    return result


def screen(model_path, inputs, out_dir, scheduler=None, chunk_size=DEFAULT_CHUNK_SIZE, threshold=None,
           workers=None, fallback_kernels=False, progress=None, retries=2):
    """Scores every record of the input files with the model file, on the
    Dask scheduler at `scheduler` or on a local cluster of `workers`
    processes (one per core by default); writes the outputs and
    `manifest.json` into `out_dir` and returns the manifest."""
    from dask.distributed import Client, LocalCluster, progress as show_progress

    if isinstance(inputs, (str, os.PathLike)):
        inputs = [inputs]
    inputs = [os.fspath(i) for i in inputs]
    model_path = os.path.abspath(os.fspath(model_path))
    for path in [model_path] + inputs:
        if not os.path.exists(path):
            raise FileNotFoundError(f"no such file: {path}")
    if threshold is not None:
        try:
            float(threshold)
        except ValueError:
            raise ValueError(f"threshold is a number, not {threshold!r}") from None
    if not isinstance(chunk_size, int) or chunk_size < 1:
        raise ValueError(f"chunk_size is a whole number of at least 1, not {chunk_size!r}")
    with open(model_path, "rb") as f:
        model_text = f.read()
    checksum = _core.model_checksum(model_text)
    # The model file is checked once here, before any worker starts.
    _core.MolModel.from_text(model_text, model_path)
    _core.drain_messages()
    os.makedirs(out_dir, exist_ok=True)
    out_dir = os.path.abspath(out_dir)
    parts = [p for k, path in enumerate(inputs)
             for p in partitions(os.path.abspath(path), k, chunk_size, out_dir)]

    cluster = None
    if scheduler is None:
        cluster = LocalCluster(n_workers=workers or os.cpu_count() or 1, threads_per_worker=1, processes=True,
                               dashboard_address=":0")
        client = Client(cluster)
    else:
        client = Client(scheduler)
    try:
        futures = client.map(score_partition, [model_path] * len(parts), [checksum] * len(parts), parts,
                             threshold=threshold, fallback_kernels=fallback_kernels, retries=retries, pure=False)
        if progress is None:
            progress = sys.stderr.isatty()
        if progress:
            show_progress(futures)
        results = []
        for part, future in zip(parts, futures):
            try:
                results.append((part, future.result(), None))
            except Exception as error:  # the partition failed every try
                results.append((part, None, f"{type(error).__name__}: {error}"))
    finally:
        client.close()
        if cluster is not None:
            cluster.close()
    return _write_manifest(out_dir, model_path, checksum, inputs, results)


def _write_manifest(out_dir, model_path, checksum, inputs, results):
    manifest = {
        "model": model_path,
        "model_checksum": f"{checksum:016x}" if checksum is not None else None,
        "inputs": inputs,
        "partitions": [],
        "rows": 0,
        "failed": 0,
        "failures": [],
        "failed_partitions": [],
    }
    for part, result, error in results:
        entry = {"input": part.input, "index": part.index, "first_row": part.first_number - 1,
                 "output": os.path.basename(part.output)}
        if result is None:
            manifest["failed_partitions"].append({**entry, "error": error})
            continue
        entry.update(rows=result["rows"], failed=result["failed"])
        manifest["partitions"].append(entry)
        manifest["rows"] += result["rows"]
        manifest["failed"] += result["failed"]
        for row, name, reason in result["failures"]:
            manifest["failures"].append({"input": part.input, "row": row, "name": name, "reason": reason})
    with open(os.path.join(out_dir, "manifest.json"), "w") as out:
        json.dump(manifest, out, indent=1)
    return manifest


def main(argv=None):
    parser = argparse.ArgumentParser(
        prog="python3 -m varimo.screen",
        description="Score molecule files with a saved model on a Dask cluster; one output file per partition "
                    "and manifest.json in the output folder.")
    parser.add_argument("--model", required=True, help="the model file (varimo-krige --save, MolKriging.save)")
    parser.add_argument("--out", required=True, help="the output folder, made when missing")
    parser.add_argument("--scheduler", help="the address of a running Dask scheduler (default: a local cluster)")
    parser.add_argument("--workers", type=int, help="worker processes of the local cluster (default: the cores)")
    parser.add_argument("--chunk-size", type=int, default=DEFAULT_CHUNK_SIZE, help="records per partition")
    parser.add_argument("--threshold", help="also the probability of a value above this")
    parser.add_argument("--fallback-kernels", action="store_true",
                        help="a failed prediction tries the kernels ranked below the model's")
    parser.add_argument("files", nargs="+", help="SD, SMILES or CSV files, gzip-compressed or not")
    args = parser.parse_args(argv)
    try:
        manifest = screen(args.model, args.files, args.out, scheduler=args.scheduler, chunk_size=args.chunk_size,
                          threshold=args.threshold, workers=args.workers, fallback_kernels=args.fallback_kernels)
    except (OSError, ValueError, RuntimeError) as error:
        print(f"varimo.screen: {error}", file=sys.stderr)
        return 2
    for failure in manifest["failures"][:20]:
        print(f"varimo.screen: {failure['input']}: row {failure['row']} ({failure['name']}): {failure['reason']}",
              file=sys.stderr)
    print(f"varimo.screen: {manifest['rows']} rows in {len(manifest['partitions'])} partitions, "
          f"{manifest['failed']} could not be predicted, {len(manifest['failed_partitions'])} partitions failed; "
          f"see {os.path.join(args.out, 'manifest.json')}", file=sys.stderr)
    return 1 if manifest["failed_partitions"] else 0
