-- WirePlumber 0.4, for one user: to ~/.config/wireplumber/main.lua.d/, for the whole computer: to
-- /etc/wireplumber/main.lua.d/. No ALSA sink is suspended when idle. The number in the name keeps it
-- after 50-alsa-config.lua, which sets all rules, and before 90-enable-all.lua, which applies them.
-- SPDX-License-Identifier: GPL-3.0-or-later
table.insert(alsa_monitor.rules, {
  matches = { { { "node.name", "matches", "alsa_output.*" } } },
  apply_properties = { ["session.suspend-timeout-seconds"] = 0 },
})
