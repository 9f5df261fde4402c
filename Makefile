# Quillmere: `make run` starts the program, `make test` builds everything and
# runs every test. Both install what is missing first (scripts/bootstrap).
SHELL := /bin/bash
.DEFAULT_GOAL := test

.PHONY: bootstrap test build run dist bench format clean

bootstrap:
	@scripts/bootstrap

test: bootstrap
	@scripts/test

build: bootstrap
	@for p in native i686 x64; do cmake --preset $$p >/dev/null && cmake --build --preset $$p || exit 1; done

run: bootstrap
	@scripts/run

dist: bootstrap
	@scripts/dist

bench: bootstrap
	@scripts/bench

format:
	@git ls-files '*.cpp' '*.h' | xargs clang-format -i

clean:
	rm -rf build dist
