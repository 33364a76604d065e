# Thin front over CMake. `make run` and `make test` are the two set-up commands.
BUILD ?= build
JOBS  ?= $(shell nproc)
CMAKE_FLAGS ?= -DCMAKE_BUILD_TYPE=Release

.PHONY: all bootstrap configure build run test bench fuzz format clean

all: build

bootstrap:
	@./scripts/bootstrap.sh

configure: bootstrap
	@cmake -S . -B $(BUILD) $(CMAKE_FLAGS) >/dev/null

build: configure
	@cmake --build $(BUILD) -j $(JOBS)

run: build
	@./scripts/run.sh $(BUILD)

test: build
	@cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

# `make bench BASE=<rev>` also runs BASE's engine and evaluator benchmarks and
# prints old against new; BENCH_FLAGS go to every benchmark program.
bench: configure
ifeq ($(BASE),)
	@cmake -S . -B $(BUILD) -DPWC_BUILD_BENCH=ON >/dev/null
	@cmake --build $(BUILD) -j $(JOBS)
	@BENCH_FLAGS='$(BENCH_FLAGS)' ./scripts/bench.sh $(BUILD)
else
	@BASE='$(BASE)' BENCH_FLAGS='$(BENCH_FLAGS)' ./scripts/bench.sh $(BUILD)
endif

# libFuzzer targets need clang; they build in their own tree.
fuzz: bootstrap
	@cmake -S . -B build-fuzz -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo \
	    -DPWC_FUZZ=ON -DPWC_BUILD_TESTS=OFF -DPWC_BUILD_HOST=OFF >/dev/null
	@cmake --build build-fuzz -j $(JOBS)
	@./scripts/fuzz.sh build-fuzz $(FUZZ_SECONDS)

format:
	@git ls-files '*.cpp' '*.h' | xargs clang-format -i

clean:
	@rm -rf $(BUILD) build-fuzz
