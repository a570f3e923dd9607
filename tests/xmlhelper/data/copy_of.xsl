<?xml version="1.0"?>
<!-- xsl:copy-of of subtrees, attributes and result tree fragments. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:variable name="banner">
    <banner kind="generated">Stock list <b>2026</b></banner>
  </xsl:variable>
  <xsl:template match="/catalog">
    <list>
      <xsl:copy-of select="@*"/>
      <xsl:copy-of select="$banner"/>
      <xsl:for-each select="book[stock &gt; 0]">
        <item>
          <xsl:copy-of select="@id | @lang"/>
          <xsl:copy-of select="title | price"/>
        </item>
      </xsl:for-each>
      <last><xsl:copy-of select="book[last()]"/></last>
      <text><xsl:copy-of select="string(book[2]/title)"/></text>
    </list>
  </xsl:template>
</xsl:stylesheet>
