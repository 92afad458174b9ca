import pytest

from varnoth_run import Pair


@pytest.fixture
def pair():
    return Pair()


@pytest.fixture
def ready(tmp_path, pair):
    """A fresh directory with a made-up pair."""
    return pair.write(tmp_path)
