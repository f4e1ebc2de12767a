# Front door for newcomers and CI.  `make demo` builds and runs an example,
# `make test` builds and runs every test, `make asan` does the same under the
# address and undefined-behaviour sanitizers.

JOBS ?= $(shell nproc 2>/dev/null || echo 2)
BUILD ?= build
ASAN_BUILD ?= build-asan
PREFIX ?= /usr/local
SUDO := $(shell [ "$$(id -u)" = 0 ] || echo sudo)

.PHONY: all build test unit e2e asan demo bench deps clean install package

all: build

# Install what a fresh Debian machine lacks: a compiler, CMake, GoogleTest, Python.
deps:
	@missing=""; \
	command -v g++ >/dev/null || missing="$$missing g++"; \
	command -v cmake >/dev/null || missing="$$missing cmake"; \
	command -v python3 >/dev/null || missing="$$missing python3"; \
	[ -f /usr/include/gtest/gtest.h ] || missing="$$missing libgtest-dev"; \
	if [ -n "$$missing" ]; then \
	  echo "installing:$$missing"; \
	  $(SUDO) apt-get update -q && $(SUDO) apt-get install -y -q $$missing; \
	fi

$(BUILD)/Makefile: deps
	@cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=Release >/dev/null

build: deps
	@cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=Release >/dev/null
	@cmake --build $(BUILD) -j$(JOBS)

test: build
	@cd $(BUILD) && ctest --output-on-failure -j$(JOBS)

asan: deps
	@cmake -S . -B $(ASAN_BUILD) -DCMAKE_BUILD_TYPE=Debug -DKIV_SANITIZE=ON >/dev/null
	@cmake --build $(ASAN_BUILD) -j$(JOBS)
	@cd $(ASAN_BUILD) && ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 \
	  UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 ctest --output-on-failure -j$(JOBS)

demo: build
	@sh examples/demo.sh $(BUILD)/kiv

bench: build
	@for b in $(BUILD)/bench_*; do [ -x "$$b" ] && "$$b"; done; true
	@[ -x bench/bench.sh ] && bench/bench.sh $(BUILD)/kiv || true

install: build
	cmake --install $(BUILD) --prefix $(PREFIX)

clean:
	rm -rf $(BUILD) $(ASAN_BUILD)
