from pair_fixtures import pair, ready  # noqa: F401
