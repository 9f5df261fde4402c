# Quillmere: `make run` starts the program, `make test` builds everything and
# runs every test. Both install what is missing first (scripts/bootstrap).
SHELL := /bin/bash
.DEFAULT_GOAL := test

.PHONY: bootstrap test check build run dist bench format clean

bootstrap:
	@scripts/bootstrap

test: bootstrap
	@scripts/test

build: bootstrap
	@for p in native i686 x64; do cmake --preset $$p >/dev/null && cmake --build --preset $$p || exit 1; done

# The portable core's tests alone, natively: the quick loop while working.
check: bootstrap
	@cmake --preset native >/dev/null && cmake --build --preset native && ctest --preset native

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
