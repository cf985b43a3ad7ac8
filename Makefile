# What a developer types; the work is done by the CMake presets of the same names.
# Every target installs what is missing from Debian's packages first.

SHELL := /bin/bash
JOBS ?= $(shell nproc)
PREFIX ?= /usr/local
APT := cmake/install-packages

.PHONY: demo test browser bench lint format sanitize tsan faults fuzz install deb clean

build-packages:
	@$(APT) build
test-packages:
	@$(APT) build test
browser-packages:
	@$(APT) build browser
bench-packages:
	@$(APT) build bench
lint-packages:
	@$(APT) build test lint
fuzz-packages:
	@$(APT) build fuzz
deb-packages:
	@$(APT) build deb
.PHONY: build-packages test-packages browser-packages bench-packages lint-packages fuzz-packages deb-packages

demo: build-packages
	@cmake --preset release > .configure.log 2>&1 || { cat .configure.log; exit 1; }
	@rm -f .configure.log
	@cmake --build --preset release -j $(JOBS)
	@cmake/demo build/release/bin/kelvane

test: test-packages
	cmake --preset debug
	cmake --build --preset debug -j $(JOBS)
	ctest --preset debug -j $(JOBS)

# The pages of kelvane report in a headless browser, which `make test` does not need.
browser: browser-packages
	cmake --preset debug > /dev/null
	cmake --build --preset debug -j $(JOBS) --target kelvane_host kelvane_translations
	tests/browser/report_pages build/debug/bin/kelvane samples

sanitize: test-packages
	cmake --preset sanitize
	cmake --build --preset sanitize -j $(JOBS)
	ctest --preset sanitize -j $(JOBS)

# The thread tests alone: Qt and OpenSceneGraph are not instrumented, so that nothing can be said of what they do.
tsan: test-packages
	cmake --preset tsan
	cmake --build --preset tsan -j $(JOBS)
	ctest --preset tsan

bench: bench-packages
	cmake --preset bench
	cmake --build --preset bench -j $(JOBS)
	OPENBLAS_NUM_THREADS=1 OMP_THREAD_LIMIT=1 build/bench/bin/kelvane_bench

lint: lint-packages
	cmake --preset debug > /dev/null
	cmake/lint build/debug $(JOBS)

format: lint-packages
	git ls-files -- '*.cpp' '*.h' 'platform/osgEarth/include' | xargs clang-format -i

# Every call and every allocation fails once, where `make test` takes a few of the allocations.
faults: test-packages
	cmake --preset debug
	cmake --build --preset debug -j $(JOBS) --target kelvane_fault_tests
	KELVANE_ALL_FAULTS=1 build/debug/bin/kelvane_fault_tests

fuzz: fuzz-packages
	cmake --preset fuzz
	cmake --build --preset fuzz -j $(JOBS)
	cmake/fuzz build/fuzz

install: build-packages
	cmake --preset release -DCMAKE_INSTALL_PREFIX=$(PREFIX)
	cmake --build --preset release -j $(JOBS)
	cmake --install build/release
	@# Programs that are linked to the library find it below the folders that the loader searches.
	@if [ "$$(id -u)" -eq 0 ] && [ -z "$$DESTDIR" ]; then ldconfig || true; fi

# Debian packages in build/release, looked through by Debian's checker.
deb: deb-packages
	cmake --preset release
	cmake --build --preset release -j $(JOBS)
	cd build/release && rm -f *.deb && cpack
	lintian --fail-on error build/release/*.deb

clean:
	rm -rf build
