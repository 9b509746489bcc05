"""Host entries through the real shared library, against `neqbridge call` making the
same calls in one process."""

import os

import pytest

from neqbridge import host
from conftest import DATA, run_tool


def tool_calls(*calls):
    """What `neqbridge call` prints for the calls, as (float, text) pairs."""
    args = []
    for call in calls:
        args += (["--"] if args else []) + [("--null" if a is host.NULL else a) for a in call]
    lines = run_tool("call", *args).decode().splitlines()
    return [(float(line.split("\t")[0]), line.partition("\t")[2]) for line in lines]


def python_calls(*calls):
    host.call("ClearNameSet")
    results = [host.call(*call) for call in calls]
    # The tool prints %g of the float: compare at that precision.
    return [(float(f"{value:g}"), text) for value, text in results]


CASES = {
    "version": [("Version",)],
    "names": [("ClearNameSet",), ("CheckName", "Head"), ("CheckName", "Head"),
              ("CheckName", "my head-1"), ("CheckName", "")],
    "null pointers": [("CheckName", host.NULL), ("GetPublicFolder", host.NULL, host.NULL),
                      ("GetPublicFolder",)],
    "no folder open": [("GetFile",), ("CloseFolder",)],
    # readdir's order is the same for both, on a folder that does not change
    "folder listing": [("OpenFolder", os.path.join(DATA, "blend"))] + [("GetFile",)] * 5
                      + [("CloseFolder",), ("CloseFolder",)],
}


@pytest.mark.parametrize("calls", CASES.values(), ids=CASES.keys())
def test_entries_return_what_the_tool_prints(calls):
    assert python_calls(*calls) == tool_calls(*calls)


def test_a_name_longer_than_the_tools_buffer_comes_back_whole():
    name = "x" * 70000
    assert python_calls(("CheckName", name), ("CheckName", name)) == \
        [(0.0, name), (0.0, name + "_copy1")]
