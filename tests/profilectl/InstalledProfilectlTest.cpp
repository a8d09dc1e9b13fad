// The program and the set-id helper as they are installed, run by two users who exist only here.
#include "support/Process.h"
#include "support/Sandbox.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace {

// Everything is in a mount namespace of its own and gone with it; nothing of the machine is changed.
constexpr char kScript[] = R"(
root=$1 helper=$2 program=$3 group=$4
mount -t tmpfs -o size=32m,mode=755 tmpfs "$root"
for name in usr bin sbin lib lib64 lib32 proc dev; do
    if [ -L /$name ]; then cp -P /$name "$root/"
    elif [ -d /$name ]; then mkdir "$root/$name"; mount --rbind /$name "$root/$name"; fi
done
helpers="$root/Library/Application Support/QUORVEX/R4270/Helpers/R4270Helper.app/Contents/MacOS"
mkdir -p "$root/etc" "$helpers" "$root/Library/Printers/QUORVEX/Preferences/vendor.quorvex.printers.R4270"
install -m 4755 "$helper" "$helpers/R4270Helper"
install -m 0755 "$program" "$root/profilectl"
printf '%s\n' root:x:0:0::/:/bin/sh anna:x:70001:70101::/:/bin/sh bert:x:70002:70101::/:/bin/sh >"$root/etc/passwd"
printf '%s\n' root:x:0: users:x:70101: "$group:x:70100:anna" >"$root/etc/group"
printf '%s\n' 'passwd: files' 'group: files' >"$root/etc/nsswitch.conf"
as() {
    user=$1; shift
    status=0
    PDE_ROOT=/bait chroot --userspec=+$user:+70101 --groups= "$root" /profilectl "$@" || status=$?
    echo "= $status"
}
as 70001 add photo.icc --class rgb --name Photo
as 70001 hide photo.icc
as 70001 list
as 70002 add photo.icc --class rgb
as 70002 list
as 70001 check | tail -2
ls -l "$root/Library/Printers/QUORVEX/Preferences/vendor.quorvex.printers.R4270" | sed -n 's/^\(-[^ ]*\) 1 \([^ ]* [^ ]*\).* /\1 \2 /p'
)";

} // namespace

TEST(InstalledProfilectl, AMemberOfTheGroupManagesHerListAndAnotherUserIsRefused)
{
#ifdef PDE_SANITIZED
    GTEST_SKIP() << "a sanitized helper must not be installed set-id";
#endif
    if (getuid() != 0 || runProcess({"unshare", "-m", "true"}).status != 0)
        GTEST_SKIP() << "installing a set-id program in a root folder of its own needs root";
    Sandbox sandbox;
    ProcessResult result = runProcess({"unshare", "-m", "sh", "-ec", kScript, "sh", sandbox.path(),
                                       PDE_INSTALLED_HELPER, PDE_INSTALLED_PROFILECTL, PDE_ADMIN_GROUP});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_NE(result.err.find("members of the group \"" PDE_ADMIN_GROUP "\""), std::string::npos)
        << result.err;
    EXPECT_EQ(result.out, "added photo.icc to rgb\n= 0\n"
                          "photo.icc is now hidden in the menus of rgb\n= 0\n"
                          "rgb  hidden  by-hand     disk  photo.icc                        Photo\n= 0\n"
                          "= 4\n= 0\n"
                          "nothing is wrong with it\n= 0\n"
                          "-rw-r--r-- root root anna-R4270-profile.plist\n");
}
