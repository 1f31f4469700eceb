"""The README's example runs as it is written."""

import os
import subprocess
import sys


def test_the_bzr_example_predicts_and_draws(tmp_path):
    example = os.path.join(os.environ.get("VARIMO_EXAMPLES_DIR", "examples/python"), "bzr_example.py")
    image = tmp_path / "report.png"
    done = subprocess.run([sys.executable, example, str(image)], capture_output=True, text=True)
    assert done.returncode == 0, done.stderr
    lines = done.stdout.splitlines()
    assert len(lines) == 41  # every 4th of bzr's 163 molecules
    assert "predicted" in lines[0] and "measured" in lines[0]
    assert image.read_bytes().startswith(b"\x89PNG")
