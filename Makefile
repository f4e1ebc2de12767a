# Front door for newcomers and CI.  `make demo` builds and runs an example,
# `make test` builds and runs every test, `make asan` does the same under the
# address and undefined-behaviour sanitizers.

MAKEFLAGS += --no-print-directory
JOBS ?= $(shell nproc 2>/dev/null || echo 2)
BUILD ?= build
ASAN_BUILD ?= build-asan
PREFIX ?= /usr/local
# Extra configure options, e.g. CMAKE_ARGS=-DKIV_WERROR=ON as CI sets it.
CMAKE_ARGS ?=
SUDO := $(shell [ "$$(id -u)" = 0 ] || echo sudo)

.PHONY: all build test unit e2e asan demo bench deps clean install package mutate

all: build

# Install what a fresh Debian machine lacks: a compiler, CMake, GoogleTest,
# Python, the line-editing library (found through pkg-config), and what the
# package test needs (dpkg-dev and file for the dependencies, lintian).
deps:
	@missing=""; \
	command -v g++ >/dev/null || missing="$$missing g++"; \
	command -v cmake >/dev/null || missing="$$missing cmake"; \
	command -v python3 >/dev/null || missing="$$missing python3"; \
	[ -f /usr/include/gtest/gtest.h ] || missing="$$missing libgtest-dev"; \
	command -v pkg-config >/dev/null || missing="$$missing pkg-config"; \
	[ -f /usr/include/histedit.h ] || missing="$$missing libedit-dev"; \
	command -v dpkg-shlibdeps >/dev/null || missing="$$missing dpkg-dev"; \
	command -v file >/dev/null || missing="$$missing file"; \
	command -v lintian >/dev/null || missing="$$missing lintian"; \
	if [ -n "$$missing" ]; then \
	  echo "installing:$$missing"; \
	  $(SUDO) apt-get update -q && $(SUDO) apt-get install -y -q $$missing; \
	fi

$(BUILD)/Makefile: deps
	@cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=Release >/dev/null

build: deps
	@cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=Release $(CMAKE_ARGS) >/dev/null
	@cmake --build $(BUILD) -j$(JOBS)

test: build
	@cd $(BUILD) && ctest --output-on-failure -j$(JOBS)

asan: deps
	@cmake -S . -B $(ASAN_BUILD) -DCMAKE_BUILD_TYPE=Debug -DKIV_SANITIZE=ON $(CMAKE_ARGS) >/dev/null
	@cmake --build $(ASAN_BUILD) -j$(JOBS)
	@cd $(ASAN_BUILD) && ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 \
	  UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 ctest --output-on-failure -j$(JOBS)

demo: build
	@sh examples/demo.sh $(BUILD)/kiv

bench: build
	@for b in $(BUILD)/bench_*; do [ -x "$$b" ] && "$$b"; done; true
	@[ -x bench/bench.sh ] && bench/bench.sh $(BUILD)/kiv || true

# Plants a fixed sample of single faults in src/ and reports which ones the
# tests catch (tools/mutate.py --help). On demand only, not part of `test`.
MUTATE_SAMPLE ?= 150
MUTATE_SEED ?= 1
mutate: deps
	@python3 tools/mutate.py --sample $(MUTATE_SAMPLE) --seed $(MUTATE_SEED) --jobs $(JOBS)

install: build
	cmake --install $(BUILD) --prefix $(PREFIX)

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) build-mutate

# ---- Fuzzing ----------------------------------------------------------------
# `make fuzz` builds the libFuzzer targets with clang in $(FUZZ_BUILD) and runs
# each for FUZZ_SECONDS. New corpus entries go to $(FUZZ_BUILD)/korpus, never
# into the seeds; a crash, hang or sanitizer report leaves its input under
# $(FUZZ_BUILD)/funde/<target>/ and fails the run.
FUZZ_SECONDS ?= 60
FUZZ_TIMEOUT ?= 10
FUZZ_BUILD ?= build-fuzz
FUZZ_TARGETS ?= intel motorola binaer fmt mmparse kdozeile compiler

.PHONY: fuzz

# Installs clang and its libFuzzer runtime where missing.
fuzz: deps
	@command -v clang++ >/dev/null || { $(SUDO) apt-get update -q && $(SUDO) apt-get install -y -q clang; }
	@probe=$$(mktemp -d); \
	echo 'extern "C" int LLVMFuzzerTestOneInput(const unsigned char*, unsigned long) { return 0; }' > $$probe/p.cpp; \
	if ! clang++ -fsanitize=fuzzer,address,undefined $$probe/p.cpp -o $$probe/p 2>/dev/null; then \
	  v=$$(clang++ --version | sed -n 's/.*clang version \([0-9]*\).*/\1/p' | head -n1); \
	  echo "installing the libFuzzer runtime for clang $$v"; \
	  $(SUDO) apt-get update -q && { $(SUDO) apt-get install -y -q libclang-rt-$$v-dev || \
	    $(SUDO) apt-get install -y -q libclang-rt-dev; }; \
	fi; rm -rf $$probe
	@CC=clang CXX=clang++ cmake -S . -B $(FUZZ_BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DKIV_FUZZ=ON >/dev/null
	@cmake --build $(FUZZ_BUILD) -j$(JOBS) --target $(addprefix fuzz_,$(FUZZ_TARGETS))
	@# Absolute paths: the compiler target works in a directory of its own.
	@b=$(abspath $(FUZZ_BUILD)); fehler=0; for z in $(FUZZ_TARGETS); do \
	  mkdir -p $$b/korpus/$$z $$b/funde/$$z; \
	  echo "fuzzing $$z for $(FUZZ_SECONDS) s"; \
	  w=$(CURDIR)/tests/fuzz/$$z.dict; [ -f $$w ] && w=-dict=$$w || w=; \
	  if ! $$b/fuzz_$$z $$w -max_total_time=$(FUZZ_SECONDS) -timeout=$(FUZZ_TIMEOUT) -print_final_stats=1 \
	      -artifact_prefix=$$b/funde/$$z/ $$b/korpus/$$z $(CURDIR)/tests/fuzz/corpus/$$z \
	      > $$b/funde/$$z.log 2>&1; then \
	    fehler=1; \
	    echo "FAILED: $$z (log $$b/funde/$$z.log)"; \
	    grep -h -E '^(==[0-9]+==ERROR|SUMMARY|kiv fuzz)' $$b/funde/$$z.log | head -n 5; \
	    for f in $$b/funde/$$z/*; do [ -f "$$f" ] && echo "  input: $$f"; done; \
	  else \
	    grep -h -E '^(#[0-9]+.*DONE|stat::number_of_executed_units)' $$b/funde/$$z.log | tail -n 2; \
	  fi; \
	done; \
	if [ $$fehler = 1 ]; then echo "fuzzing found faults; reproduce with the fuzz_<target> executable and the input"; exit 1; fi

# ---- Documentation and package ----------------------------------------------
# The manual page check of `make test` needs groff; `make package` leaves
# build/kiv_<version>_<arch>.deb. `make doc` regenerates the argument lists
# of doc/kiv.1 from the program's help after a command has changed.
.PHONY: doc-deps doc

deps: doc-deps

doc-deps:
	@command -v groff >/dev/null || { echo "installing: groff"; \
	  $(SUDO) apt-get update -q && $(SUDO) apt-get install -y -q groff; }

package: build
	@cd $(BUILD) && cpack -G DEB

doc: build
	@python3 doc/gen_commands.py --kiv $(BUILD)/kiv
# ---- end of documentation and package ---------------------------------------
