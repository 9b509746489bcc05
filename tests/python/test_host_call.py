"""Host entries through the real shared library, against `neqbridge call` making the
same calls in one process."""

import pytest

from neqbridge import host
from conftest import run_tool


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
}


@pytest.mark.parametrize("calls", CASES.values(), ids=CASES.keys())
def test_entries_return_what_the_tool_prints(calls):
    assert python_calls(*calls) == tool_calls(*calls)


def test_a_name_longer_than_the_tools_buffer_comes_back_whole():
    name = "x" * 70000
    assert python_calls(("CheckName", name), ("CheckName", name)) == \
        [(0.0, name), (0.0, name + "_copy1")]


def test_folder_listing_and_file_entries(tmp_path):
    (tmp_path / "source.txt").write_bytes(b"abc")
    (tmp_path / "dest.txt").write_bytes(b"xy")
    assert host.call("AddFile", str(tmp_path / "source.txt"), str(tmp_path / "dest.txt")) == \
        (0.0, str(tmp_path / "dest.txt"))
    assert (tmp_path / "dest.txt").read_bytes() == b"xyabcc"
    assert host.call("OpenFolder", str(tmp_path))[0] == 0.0
    names = []
    while (result := host.call("GetFile"))[0] == 0.0:
        names.append(result[1])
    assert result[0] == -3.0
    assert sorted(names) == [".", "..", "dest.txt", "source.txt"]
    assert host.call("CloseFolder") == (0.0, "")
    assert host.call("FileDelete", str(tmp_path / "dest.txt"))[0] == 0.0
    assert not (tmp_path / "dest.txt").exists()


def test_unknown_entry_is_refused():
    with pytest.raises(ValueError, match="unknown entry 'Nope'"):
        host.call("Nope")
