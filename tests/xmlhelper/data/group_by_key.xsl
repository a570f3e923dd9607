<?xml version="1.0"?>
<!-- Groups books by genre with the Muenchian method. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:key name="by-genre" match="book" use="@genre"/>
  <xsl:template match="/catalog">
    <genres>
      <xsl:for-each select="book[generate-id() = generate-id(key('by-genre', @genre)[1])]">
        <xsl:sort select="@genre"/>
        <xsl:variable name="members" select="key('by-genre', @genre)"/>
        <genre name="{@genre}" count="{count($members)}" value="{sum($members/price)}">
          <xsl:for-each select="$members">
            <title stock="{stock}"><xsl:value-of select="title"/></title>
          </xsl:for-each>
        </genre>
      </xsl:for-each>
    </genres>
  </xsl:template>
</xsl:stylesheet>
