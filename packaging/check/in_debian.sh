# Runs in a fresh Debian, beside the .debs: installs them, and builds programs with them.
set -eu
cd /opt/check
export DEBIAN_FRONTEND=noninteractive
apt-get -qq update || true
apt-get -qq -y --no-install-recommends install ./*.deb > install.log 2>&1 || { cat install.log; exit 1; }
qv8 --version | head -n 1
dpkg -S "$(command -v qv8)"

expect_lighter() { # PROGRAM
    "$1" picture.bmp lighter.bmp | tr '\n' ' '
    cmp lighter.bmp expected.bmp
    rm lighter.bmp
}
cmake -S . -B build > cmake.log 2>&1 && cmake --build build >> cmake.log 2>&1 || { cat cmake.log; exit 1; }
expect_lighter build/lighter
echo "<- C, the .debs, find_package"
cc lighter.c $(pkg-config --cflags --libs qv8effect) -o lighter
expect_lighter ./lighter
echo "<- C, the .debs, pkg-config"
python3 -c 'import qv8; qv8.write("lighter.bmp", qv8.rgb_gamma(qv8.read("picture.bmp"), -0.5, -0.5, -0.5))'
cmp lighter.bmp expected.bmp && rm lighter.bmp
echo "the same bytes <- Python, the .debs"
apt-get -qq -y purge python3-qv8 qv8 libqv8effect libqv8effect-dev > install.log 2>&1
