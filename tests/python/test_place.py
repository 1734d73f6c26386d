"""Which library is loaded: none that somebody else could have put there."""

import os
from pathlib import Path

import pytest

from conftest import BUILD
from diagsrunner import LibraryError
from diagsrunner import _library, _place

OWN = BUILD / "lib/libdiags.so.1"


def refusal(path):
    return str(pytest.raises(LibraryError, _place.find_library, {"DIAGS_LIBRARY": str(path)}).value)


def test_takes_what_the_user_alone_can_write():
    assert _place.find_library({"DIAGS_LIBRARY": str(OWN)}) == OWN.resolve()


def test_refuses_a_path_that_depends_on_the_folder_it_is_used_in(monkeypatch):
    monkeypatch.chdir(OWN.parent)
    assert "no whole path" in refusal("libdiags.so.1")
    assert "no whole path" in refusal("./libdiags.so.1")


def test_refuses_what_is_not_there(tmp_path):
    assert "gone" in refusal(tmp_path / "gone")


@pytest.mark.parametrize("mode", [0o775, 0o757, 0o777])
@pytest.mark.parametrize("which", ["file", "folder", "above"])
def test_refuses_what_others_can_write(tmp_path, mode, which):
    folder = tmp_path / "above/folder"
    folder.mkdir(parents=True)
    file = folder / "libdiags.so.1"
    file.touch(mode=0o755)
    assert _place.find_library({"DIAGS_LIBRARY": str(file)}) == file
    {"file": file, "folder": folder, "above": folder.parent}[which].chmod(mode)
    assert "others can write" in refusal(file)


def test_a_link_counts_for_what_it_leads_to(tmp_path):
    open_to_all = tmp_path / "open"
    open_to_all.mkdir()
    (open_to_all / "libdiags.so.1").touch()
    open_to_all.chmod(0o777)
    (tmp_path / "link").symlink_to(open_to_all / "libdiags.so.1")
    assert "others can write" in refusal(tmp_path / "link")


@pytest.mark.skipif(os.geteuid() != 0, reason="only root gives files away")
def test_refuses_what_is_another_users(tmp_path):
    file = tmp_path / "libdiags.so.1"
    file.touch(mode=0o755)
    os.chown(file, 12345, 12345)
    assert "another user's" in refusal(file)


def test_looks_only_beside_itself_and_in_the_systems_folders(monkeypatch, tmp_path):
    (tmp_path / "libdiags.so.1").touch()
    monkeypatch.chdir(tmp_path)
    for name in ("LD_LIBRARY_PATH", "PATH", "PYTHONPATH"):
        monkeypatch.setenv(name, str(tmp_path))
    places = list(_place._places(Path("/usr/lib/python3/dist-packages/diagsrunner")))
    assert [str(place.parent) for place in places] == [
        "/usr/lib/python3/dist-packages/diagsrunner/native", "/usr/lib/python3/diagsrunner",
        "/usr/lib/diagsrunner", "/usr/lib/diagsrunner", "/usr/local/lib/diagsrunner"]


def test_says_where_it_has_looked(monkeypatch, tmp_path):
    monkeypatch.setattr(_place, "_places", lambda _: iter([tmp_path / "a", tmp_path / "b"]))
    error = pytest.raises(LibraryError, _place.find_library, {}).value
    assert str(tmp_path / "a") in str(error) and str(tmp_path / "b") in str(error)


def test_refuses_a_library_that_is_another_one_or_none(tmp_path):
    text = tmp_path / "text.so"
    text.write_text("no library")
    with pytest.raises(LibraryError, match="cannot be loaded"):
        _library.library_at(text)
    with pytest.raises(LibraryError, match="another library"):
        _library.library_at(BUILD / "lib/libvorcore.so.1")
    with pytest.raises(LibraryError, match="whole path"):
        _library.library_at("libdiags.so.1")


def test_refuses_a_library_that_is_too_old_and_takes_a_newer_one(monkeypatch):
    monkeypatch.setattr(_library, "OLDEST_INTERFACE", 99)
    with pytest.raises(LibraryError, match="too old.* 99 is needed"):
        _library.Library(OWN)
    monkeypatch.setattr(_library, "OLDEST_INTERFACE", 1)
    assert _library.Library(OWN).interface >= 4
