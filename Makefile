# Two entry points: `make demo` and `make test`. Everything else is CMake.
MAKEFLAGS += --no-print-directory
BUILD_DIR ?= build
BUILD_TYPE ?= RelWithDebInfo
JOBS ?= $(shell nproc)
SANITIZE ?= OFF

.PHONY: deps configure build demo test clean

deps:
	@bash cmake/install-deps.sh

configure: deps
	@cmake -S . -B $(BUILD_DIR) -DCMAKE_BUILD_TYPE=$(BUILD_TYPE) -DBT_SANITIZE=$(SANITIZE) >/dev/null

build: configure
	@cmake --build $(BUILD_DIR) -j $(JOBS)

test: build
	@cd $(BUILD_DIR) && ctest --output-on-failure -j $(JOBS) --timeout 300

demo: build
	@bash cmake/run-demo.sh $(BUILD_DIR)

clean:
	rm -rf $(BUILD_DIR)
