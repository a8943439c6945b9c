-- SPDX-License-Identifier: GPL-3.0-or-later
-- The installed manual stands alone: what it links in the source tree becomes plain text.
function Link(link)
  if link.target:match("^%.%./") or link.target:match("%.md") then
    return link.content
  end
end
